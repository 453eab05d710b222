// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QFont>
#include <QObject>

namespace Common {

/// The application's two fonts, for QML (creatable type FontHelper), loaded from the resources
/// ":/fonts/ProximaNova-Regular" and ":/fonts/ProximaNova-Bold". If one of them cannot be loaded,
/// both stay the framework's default font and a warning is logged. Needs the GUI application
/// object; GUI thread.
class FontHelper : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QFont font READ font NOTIFY fontChanged)
    Q_PROPERTY(QFont boldFont READ boldFont NOTIFY fontChanged)

public:
    explicit FontHelper(QObject* parent = nullptr);

    QFont font() const;
    QFont boldFont() const;

signals:
    void fontChanged();

private:
    QFont m_font;
    QFont m_boldFont;
};

} // namespace Common
