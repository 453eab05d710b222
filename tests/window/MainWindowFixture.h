#pragma once

#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "support/ShownItems.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

/// The program's window over a bus of virtual units, with firmware to ship: the base of its tests.
/// Each begins with an empty list, and fails when the framework warned of something meanwhile.
class MainWindowFixture : public QObject
{
    Q_OBJECT

protected:
    /// Loads the document; the window of an earlier one goes.
    void loadWindow();

    QQuickItem* one(const QString& objectName) const { return shownItem(m_window, objectName); }
    QList<QQuickItem*> visible(const QString& objectName) const
    {
        return shownItems(m_window, objectName);
    }
    bool shows(const QString& text) const { return showsText(m_window, text); }
    QString barText() const { return one("progressBarText")->property("text").toString(); }
    /// Whether the update has ended, well or not.
    bool isDone() const;

    std::unique_ptr<BusFixture> m_bus;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    std::unique_ptr<LogCapture> m_log;
    QQuickWindow* m_window = nullptr;
    QByteArray m_image; ///< of both bundles, version 1.3.1

private slots:
    void initTestCase();
    void init();
    void cleanup();
};
