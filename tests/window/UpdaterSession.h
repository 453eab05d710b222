#pragma once

#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "support/ShippedFirmware.h"
#include "support/ShownItems.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <chrono>

class QQmlApplicationEngine;
class QQuickWindow;

/// How long the program waits for things.
struct SessionTimes
{
    int listingDelayMs;                      ///< from a notice to the listing of the bus
    int eventIntervalMs;                     ///< between two passes over libusb's events; 0: the
                                             ///< notifier's own timer alone
    std::chrono::milliseconds pollSleep;     ///< between two status reads
    std::chrono::milliseconds statusTimeout; ///< of a status read

    /// For tests that are not about time.
    static SessionTimes quick();
    /// The shipped figures.
    static SessionTimes real();
};

/// The updater as a person has it before them: the real QML document over the real classes and the
/// real libusb, driven by its buttons. What it says is collected: the signals of the watcher and of
/// every update task, and the states that it logs. GUI thread.
class UpdaterSession : public QObject
{
    Q_OBJECT

public:
    explicit UpdaterSession(const SessionTimes& times);
    ~UpdaterSession() override;

    /// Whether the document was loaded and its window stands.
    bool isRunning() const { return m_window != nullptr; }

    QQuickWindow* window() const { return m_window; }
    QQmlApplicationEngine* engine() const { return m_engine.get(); }

    /// Visible items of that object name, from top to bottom.
    QList<QQuickItem*> visible(const QString& objectName) const
    {
        return shownItems(m_window, objectName);
    }
    /// The visible item of that object name, when there is exactly one.
    QQuickItem* one(const QString& objectName) const { return shownItem(m_window, objectName); }
    /// Whether a visible item has that text.
    bool shows(const QString& text) const { return showsText(m_window, text); }
    /// The text on the progress bar; empty in the list.
    QString barText() const;
    bool isDone() const;
    /// Whether the list has exactly one card, with a button of that text that is enabled or not.
    bool offers(const QString& buttonText, bool enabled) const;
    /// Presses the middle of an item as a mouse does; false when there is none.
    bool press(QQuickItem* item);
    bool press(const QString& objectName) { return press(one(objectName)); }

    /// Serves events until the condition holds; false after @p milliseconds.
    bool wait(const std::function<bool()>& condition, int milliseconds = 20000);

    /// Of the watcher, in order: "+Aquen (Update)" addedDevice, "dfu" addedDFUDevice, "-NAME"
    /// removedDevice.
    const QStringList& unitSignals() const { return m_unitSignals; }
    /// Units that the watcher has announced and not taken back.
    int unitsPresent() const { return m_unitsPresent; }
    /// Of all tasks, in order: "progress 0.4096", "finished", "error TEXT".
    const QStringList& taskSignals() const { return m_taskSignals; }
    /// The states that were entered, in order.
    QStringList states() const;
    const LogCapture& log() const { return m_log; }
    /// The longest that one turn of the event loop took, in milliseconds, without what the machine
    /// let it wait for a processor.
    int longestTurn() const { return int(m_longestTurn); }

    /// Forgets all signals, states and turns so far.
    void forget();

private slots:
    void on_updatingState_taskChanged();

private:
    void useTimes(const SessionTimes& times);
    void listen();

    LogCapture m_log;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
    QObject* m_updatingState = nullptr;
    QTimer m_libusbEvents;
    QStringList m_unitSignals;
    QStringList m_taskSignals;
    int m_unitsPresent = 0;
    qint64 m_longestTurn = 0;
};

/// Message handler that leaves out what the platform without a screen says at every change of the
/// window's size, and hands on the rest.
void withoutSizeHints(QtMsgType type, const QMessageLogContext& context, const QString& text);
