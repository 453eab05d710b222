// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

#include <memory>

class QMessageBox;

namespace AquenSolvar {

/// Opens the guide and the log's folder with the desktop's own programs, for QML (singleton Help).
/// What cannot be opened is logged and reported in a message box, which does not block. Needs a
/// QApplication; GUI thread.
class Help : public QObject
{
    Q_OBJECT

public:
    explicit Help(QObject* parent = nullptr);
    ~Help() override;

    /// Opens the user's guide at a heading: the installed page that leads there, or the guide with
    /// the heading's anchor.
    /// @param heading the English text of the heading in docs/user-guide.md; empty for the top
    Q_INVOKABLE void open(const QString& heading);

    /// Opens the folder of the log files.
    Q_INVOKABLE void openLogFolder();

    /// The installed HTML of the guide; its source where that is missing, as in a build tree.
    static QString guideFile();

    /// The anchor that the guide's converter makes of a heading (pandoc, gfm_auto_identifiers): in
    /// lower case, without punctuation, and with "-" for each space.
    static QString anchorOf(const QString& heading);

private:
    void openFile(const QString& path, const QString& anchor);
    void reportFailure(const QString& path);

    std::unique_ptr<QMessageBox> m_box;
};

} // namespace AquenSolvar
