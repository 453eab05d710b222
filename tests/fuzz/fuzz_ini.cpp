// SPDX-License-Identifier: LicenseRef-Proprietary
// INI texts, read as a second implementation reads them.
#include "Common/Logging/IniDocument.h"
#include "Harness.h"

#include <QMap>
#include <QRegularExpression>

namespace {

// By section and key, which are in one case.
using Values = QMap<QPair<QString, QString>, QString>;

QString trimmed(QString text)
{
    return text.remove(QRegularExpression("^[ \t]+|[ \t]+$"));
}

std::optional<Values> expectedValues(const QByteArray& text)
{
    static const QRegularExpression form(QStringLiteral("^(?:\\[([^]]*)\\]|([^[=][^=]*)=(.*))$"),
                                         QRegularExpression::DotMatchesEverythingOption);
    Values values;
    QString section;
    if (text.contains('\0'))
        return std::nullopt;
    for (const QString& whole : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
        const QString line = trimmed(QString(whole).remove(QRegularExpression("\r$")));
        if (line.isEmpty() || QStringLiteral(";#").contains(line[0]))
            continue;
        const QRegularExpressionMatch match = form.match(line);
        const QString name = trimmed(match.captured(1)).toCaseFolded();
        const QString key = trimmed(match.captured(2)).toCaseFolded();
        if (name.isEmpty() && key.isEmpty())
            return std::nullopt;
        if (!name.isEmpty())
            section = name;
        else if (!section.isEmpty())
            values.insert({section, key}, trimmed(match.captured(3)));
    }
    return values;
}

} // namespace

void check(const QByteArray& input)
{
    const std::optional<Values> expected = expectedValues(input);
    const auto document = Common::IniDocument::parse(input);
    assert(document.has_value() == expected.has_value());
    const Values values = expected.value_or(Values());
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        assert(document->section(value.key().first)->value(value.key().second) == *value);
}
