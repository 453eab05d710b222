// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/Help.h"

#include "Common/Paths.h"
#include "qslog/Log.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QUrl>
#include <QWindow>

namespace AquenSolvar {

Help::Help(QObject* parent)
    : QObject(parent)
{
}

Help::~Help() = default;

void Help::open(const QString& heading)
{
    const QString guide = guideFile();
    const QString anchor = anchorOf(heading);
    // Windows does not open a file with an anchor, and many a desktop drops the anchor.
    const QString page = guide.section(QLatin1Char('.'), 0, -2) + QLatin1Char('/') + anchor +
                         QStringLiteral(".html");
    if (!anchor.isEmpty() && QFileInfo::exists(page))
        openFile(page, QString());
    else
        openFile(guide, anchor);
}

void Help::openLogFolder()
{
    openFile(Common::Paths::logDirectory(), QString());
}

QString Help::guideFile()
{
    const QString installed = QDir::cleanPath(Common::Paths::applicationSubdirectory(
        QStringLiteral(ASU_GUIDE_FOLDER "/docs/user-guide.html")));
    const QString source = Common::Paths::fileInDirectory(Common::Paths::sourcesDirectory(),
                                                          QStringLiteral("docs/user-guide.md"));
    return QFileInfo::exists(installed) || !QFileInfo::exists(source) ? installed : source;
}

QString Help::anchorOf(const QString& heading)
{
    QString anchor;
    const QString lower = heading.toLower();
    for (const QChar character : lower) {
        if (character.isLetterOrNumber() || character == QLatin1Char('-') ||
            character == QLatin1Char('_'))
            anchor += character;
        else if (character.isSpace())
            anchor += QLatin1Char('-');
    }
    return anchor;
}

void Help::openFile(const QString& path, const QString& anchor)
{
    QUrl url = QUrl::fromLocalFile(path);
    if (!anchor.isEmpty())
        url.setFragment(anchor);
    if (QFileInfo::exists(path) && QDesktopServices::openUrl(url)) {
        QLOG_INFO() << "Opened" << url.toString();
        return;
    }
    QLOG_WARN() << "Could not open" << url.toString();
    reportFailure(path);
}

void Help::reportFailure(const QString& path)
{
    m_box = std::make_unique<QMessageBox>(
        QMessageBox::Warning, QString(),
        //: Message box: no program shows it, or it is missing. %1 is the path of a file or folder.
        tr("Could not open %1").arg(QDir::toNativeSeparators(path)));
    m_box->setTextFormat(Qt::PlainText);
    m_box->setAttribute(Qt::WA_QuitOnClose,
                        false); // the box alone must not keep the program running
    if (QWindow* window = QGuiApplication::focusWindow()) {
        m_box->setWindowTitle(window->title());
        m_box->winId(); // creates the window's handle
        m_box->windowHandle()->setTransientParent(window);
    }
    m_box->show();
}

} // namespace AquenSolvar
