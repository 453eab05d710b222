// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "support/BusFixture.h"
#include "support/LogCapture.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

/// The base of the window's tests: virtual units, firmware to ship, and the real document over the
/// real classes and the real libusb, used as a person uses it. Each test starts with an empty list
/// and log, and fails when the framework warns. GUI thread.
class UpdaterSession : public QObject
{
    Q_OBJECT

protected:
    /// Starts the program anew, with no waits but for status responses. It runs from test to test
    /// while it shows its list.
    void start(VirtualUnit::milliseconds statusTimeout = VirtualUnit::milliseconds(300));
    /// The first half of start(): the document is loaded, and nothing has run yet.
    void load(VirtualUnit::milliseconds statusTimeout);
    /// Ends the program the way its main function does.
    void end();

    /// Visible items of that object name, or all of them, from top to bottom.
    QList<QQuickItem*> visible(const QString& objectName = QString()) const;
    /// The visible item of that object name; null unless there is exactly one.
    QQuickItem* one(const QString& objectName) const;
    bool shows(const QString& text) const;
    /// Clicks the one item of that name; false when it is not there or disabled.
    bool press(const QString& objectName) const;
    /// The text on the progress bar; empty in the list.
    QString barText() const { return textOf(one("progressBarText")); }
    /// Whether an update has ended, successfully or not.
    bool isDone() const { return one("doneButton") && one("doneButton")->isEnabled(); }
    /// Starts the one update that is offered and waits for its end: the text on the bar.
    QString update() const;
    /// Reports a washing unit that cannot be opened to the program, or that it has left.
    void reportUnopened(bool isAttached = true) const;
    /// Serial names of the units that the program knows.
    QStringList listed() const;
    static QString textOf(const QObject* item)
    {
        return item ? item->property("text").toString() : "";
    }

    BusFixture m_bus;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
    QByteArray m_aquenImage; ///< of version 1.3.1, in two chunks, as shipped
    QByteArray m_solvarImage;

private slots:
    void initTestCase();
    void init();
    void cleanup();
};
