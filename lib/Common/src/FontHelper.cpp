// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/FontHelper.h"

#include "qslog/Log.h"

#include <QFontDatabase>

namespace Common {

namespace {

constexpr int failed = -1;

QString familyOf(int fontId)
{
    const QStringList families = QFontDatabase::applicationFontFamilies(fontId);
    return families.isEmpty() ? QStringLiteral("Proxima Nova") : families.constFirst();
}

} // namespace

FontHelper::FontHelper(QObject* parent)
    : QObject(parent)
{
    const int regular =
        QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/ProximaNova-Regular"));
    const int bold = QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/ProximaNova-Bold"));
    if (regular == failed || bold == failed) {
        QLOG_WARN() << "Could not load ProximaNova font";
        return;
    }
    const QString regularFamily = familyOf(regular);
    QLOG_WARN() << "Family name for regular font = " << regularFamily;
    m_font.setFamily(regularFamily);
    const QString boldFamily = familyOf(bold);
    QLOG_WARN() << "Family name for bold font = " << boldFamily;
    m_boldFont.setFamily(boldFamily);
    m_boldFont.setWeight(QFont::Bold);
}

QFont FontHelper::font() const
{
    return m_font;
}

QFont FontHelper::boldFont() const
{
    return m_boldFont;
}

} // namespace Common

// Compiled here instead of with those of the other classes: a program that uses one of those would
// otherwise need Qt Gui.
#include "moc_FontHelper.cpp" // NOLINT(bugprone-suspicious-include)
