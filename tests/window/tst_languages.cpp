// Every screen in every language: that the language is found, and that no text is cut or
// overlaps another.
#include "USB/LibusbDeviceEnumerator.h"
#include "shell/Translation.h"
#include "shell/UserInterface.h"
#include "support/BusFixture.h"
#include "support/ShownItems.h"
#include "update/DetachedJob.h"

#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>

using namespace VirtualUnit;

namespace {

struct Message
{
    QString context;
    QString source;
};

// The texts of a translation file, which is itself checked against the sources.
QList<Message> messagesOf(const QString& tsFile)
{
    QFile file(tsFile);
    QList<Message> messages;
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == "name")
            context = xml.readElementText();
        else if (xml.name() == "source")
            messages.append({context, xml.readElementText()});
    }
    return messages;
}

QString translated(const Message& message)
{
    return QCoreApplication::translate(qPrintable(message.context), qPrintable(message.source));
}

// Where a text is painted, in the window; centred and left-aligned items are all that there are.
QRectF paintedRect(const QQuickItem* text)
{
    const QSizeF size(text->property("contentWidth").toReal(),
                      text->property("contentHeight").toReal());
    return text->mapRectToScene(QRectF(QPointF(0, 0), size));
}

// What of it a list lets see that has scrolled.
QRectF seenPart(const QQuickItem* text, QRectF rect)
{
    for (const QQuickItem* around = text->parentItem(); around; around = around->parentItem()) {
        if (around->clip())
            rect &= around->mapRectToScene(around->boundingRect());
    }
    return rect;
}

} // namespace

class tst_languages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void choice_data();
    void choice();
    void everyTextHasRoom_data();
    void everyTextHasRoom();

private:
    QList<QQuickItem*> visibleTexts();
    bool shows(const QString& text);
    QStringList misfits();

    std::unique_ptr<BusFixture> m_bus;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow* m_window = nullptr;
};

void tst_languages::initTestCase()
{
    const QFontDatabase fonts;
    for (const auto system :
         {QFontDatabase::Japanese, QFontDatabase::Korean, QFontDatabase::SimplifiedChinese})
        QVERIFY2(!fonts.families(system).isEmpty(), "no font to measure with");
    m_bus = std::make_unique<BusFixture>();
}

void tst_languages::cleanup()
{
    m_engine.reset();
    AquenSolvar::Device::DetachedJob::endAll();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qDeleteAll(qApp->findChildren<QTranslator*>());
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

void tst_languages::choice_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("none") << QStringList() << "";
    QTest::newRow("POSIX") << QStringList("C") << "";
    QTest::newRow("region") << QStringList("de-AT") << "de";
    QTest::newRow("English first") << QStringList({"en-GB", "de-DE"}) << "";
    QTest::newRow("unknown first") << QStringList({"nl-NL", "fr-FR"}) << "fr";
    QTest::newRow("Portugal") << QStringList("pt-PT") << "pt_BR";
    QTest::newRow("simplified") << QStringList("zh-CN") << "zh_CN";
    QTest::newRow("simplified by script") << QStringList("zh-Hans-SG") << "zh_CN";
    QTest::newRow("traditional") << QStringList("zh-TW") << "";
    QTest::newRow("garbage") << QStringList({"", "..", "xx-YY"}) << "";
}

void tst_languages::choice()
{
    QFETCH(QStringList, languages);
    QTEST(AquenSolvar::translationFor(languages), "suffix");
}

void tst_languages::everyTextHasRoom_data()
{
    QTest::addColumn<QString>("tsFile");
    const QDir directory(TRANSLATIONS);
    const QString prefix = "AquenSolvarUpdater_";
    const QStringList files = directory.entryList({prefix + "*.ts"});
    QVERIFY(!files.isEmpty());
    for (const QString& name : files)
        QTest::newRow(qPrintable(name.mid(prefix.size()).chopped(3))) << directory.filePath(name);
}

QList<QQuickItem*> tst_languages::visibleTexts()
{
    QList<QQuickItem*> texts = shownItems(m_window);
    const auto isNone = [](const QQuickItem* item) {
        return !item->inherits("QQuickText") || item->property("text").toString().isEmpty();
    };
    texts.erase(std::remove_if(texts.begin(), texts.end(), isNone), texts.end());
    return texts;
}

// Painted, that is: a button has its text apart from its label.
bool tst_languages::shows(const QString& text)
{
    const QList<QQuickItem*> texts = visibleTexts();
    return std::any_of(texts.begin(), texts.end(), [&text](const QQuickItem* item) {
        return item->property("text").toString() == text;
    });
}

// What is cut, reaches out of an item around it, or lies on another text.
QStringList tst_languages::misfits()
{
    QStringList found;
    QMultiMap<QString, QRectF> taken;
    for (const QQuickItem* text : visibleTexts()) {
        const QString words = text->property("text").toString();
        const QRectF rect = paintedRect(text);
        if (text->property("truncated").toBool())
            found << "cut: " + words;
        for (const QQuickItem* around = text->parentItem(); around; around = around->parentItem()) {
            // What a list scrolls is as wide as it likes; the list itself comes next.
            if (around->parentItem() && around->parentItem()->inherits("QQuickFlickable"))
                continue;
            const QRectF room = around->mapRectToScene(around->boundingRect());
            if (room.width() > 0 &&
                (rect.left() < room.left() - 1 || rect.right() > room.right() + 1))
                found << "too wide: " + words;
        }
        const QRectF seen = seenPart(text, rect);
        for (auto other = taken.cbegin(); other != taken.cend(); ++other) {
            if (seen.adjusted(1, 2, -1, -2).intersects(other.value()))
                found << words + " lies on " + other.key();
        }
        taken.insert(words, seen);
    }
    return found;
}

void tst_languages::everyTextHasRoom()
{
    QFETCH(QString, tsFile);
    QVERIFY(AquenSolvar::installTranslation(*qApp, QTest::currentDataTag()));
    m_engine = std::make_unique<QQmlApplicationEngine>();
    QVERIFY(AquenSolvar::loadUserInterface(*m_engine));
    m_window = qobject_cast<QQuickWindow*>(m_engine->rootObjects().constFirst());
    m_window->findChild<USB::LibusbDeviceEnumerator*>()->setListingDelay(50);
    const auto words = [](const char* context, const char* source) {
        return QCoreApplication::translate(context, source);
    };
    QVERIFY(waitFor([&] {
        return shows(words("DeviceListView", "Looking for Aquen or Solvar connected via USB"));
    }));
    QTRY_COMPARE(misfits().join("; "), QString());

    m_bus->plugApplication("WW-0000-0001", "1.2.0");
    m_bus->plugApplication("CC-0000-0002", "1.3.1", Kind::Solvar);
    const P_Unit bootloader = m_bus->plugBootloader();
    // It holds the update screen still, until the window goes.
    bootloader->addFault(Fault::on("erase", Fault::Action::StayBusy, Fault::Forever));
    for (const char* text :
         {"Update Firmware", "Resume Update", "Firmware Up To Date", "Connected"})
        QVERIFY2(waitFor([&] { return shows(words("DeviceInfoContents", text)); }, 10000), text);
    QTRY_COMPARE(misfits().join("; "), QString());

    const QList<QQuickItem*> buttons = shownItems(m_window, "updateButton");
    const auto resume = std::find_if(buttons.begin(), buttons.end(), [&](const QQuickItem* item) {
        return item->property("text").toString() == words("DeviceInfoContents", "Resume Update");
    });
    QVERIFY(resume != buttons.end() && (*resume)->isEnabled());
    QVERIFY(QMetaObject::invokeMethod(*resume, "clicked"));
    QVERIFY(waitFor([&] { return shownItem(m_window, "progressBar") != nullptr; }));
    for (const Message& message : messagesOf(tsFile)) {
        if (message.context != "FirmwareUpdateState" && !message.context.endsWith("DFUDownloadJob"))
            continue;
        const QString text =
            translated(message).replace("%1", "control write error: LIBUSB_ERROR_NO_DEVICE");
        QVERIFY(shownItem(m_window, "progressBar")->setProperty("progressBarText", text));
        QVERIFY(shows(text));
        QTRY_COMPARE(misfits().join("; "), QString());
    }
}

QTEST_MAIN(tst_languages)
#include "tst_languages.moc"
