// SPDX-License-Identifier: LicenseRef-Proprietary
// Every screen in every language: which one is chosen, that no text is cut or overlaps another, and
// that the log stays English. That none is missing is checked with the sources.
#include "shell/Translation.h"
#include "support/UpdaterSession.h"

#include <QDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

using namespace VirtualUnit;

class tst_languages : public UpdaterSession
{
    Q_OBJECT

private slots:
    void choice();
    void screens_data();
    void screens();

private:
    QString misfit() const;
};

void tst_languages::choice()
{
    const QList<QPair<QString, QString>> rows = {
        {"", ""},           {"de-AT", "de"},         {"en-GB de-DE", ""},   {"C nl-NL fr-FR", "fr"},
        {"pt-PT", "pt_BR"}, {"zh-Hans-SG", "zh_CN"}, {"zh-TW ja-JP", "ja"}, {".. xx-YY", ""},
    };
    for (const auto& [languages, suffix] : rows)
        QCOMPARE(AquenSolvar::translationFor(languages.split(' ')), suffix);
}

void tst_languages::screens_data()
{
    QTest::addColumn<QString>("tsFile");
    const QFileInfoList files = QDir(TRANSLATIONS).entryInfoList({"*.ts"});
    QCOMPARE(files.size(), 8);
    for (const QFileInfo& file : files)
        QTest::newRow(qPrintable(file.baseName().section('_', 1))) << file.filePath();
}

// A text that is cut, reaches out of an item around it, or lies on another one.
QString tst_languages::misfit() const
{
    QList<QRectF> taken;
    for (const QQuickItem* text : visible()) {
        QString words = textOf(text);
        if (!text->inherits("QQuickText") || words.isEmpty())
            continue;
        const QSizeF size(text->property("contentWidth").toReal(),
                          text->property("contentHeight").toReal());
        const QRectF painted = text->mapRectToScene(QRectF(QPointF(0, 0), size));
        QRectF seen = painted;
        bool fits = !text->property("truncated").toBool();
        for (const QQuickItem* around = text->parentItem(); around; around = around->parentItem()) {
            const QRectF bounds = around->mapRectToScene(around->boundingRect());
            const QQuickItem* next = around->parentItem();
            // What a list scrolls is as wide as it likes; the list itself comes next.
            if (bounds.isEmpty() || (next != nullptr && next->inherits("QQuickFlickable")))
                continue;
            fits =
                fits && painted.left() > bounds.left() - 1 && painted.right() < bounds.right() + 1;
            seen = around->clip() ? seen & bounds : seen;
        }
        for (const QRectF& other : qAsConst(taken))
            fits = fits && !seen.adjusted(1, 2, -1, -2).intersects(other);
        if (!fits)
            return words;
        taken << seen;
    }
    return QString();
}

void tst_languages::screens()
{
    QFETCH(QString, tsFile);
    qDeleteAll(qApp->findChildren<QTranslator*>());
    QVERIFY(AquenSolvar::installTranslation(*qApp, QTest::currentDataTag()));
    start();
    const auto words = [](const char* context, const char* source) {
        return QCoreApplication::translate(context, source);
    };
    QVERIFY(shows(words("DeviceListView", "Looking for Aquen or Solvar connected via USB")));
    QTRY_COMPARE(misfit(), QString());

    m_bus.plugApplication("WW-0000-0001", "1.2.0");
    m_bus.plugApplication("CC-0000-0002", "1.3.1", Kind::Solvar);
    m_bus.plugApplication("", "1.3.1")->addFault(Fault::on("config", Fault::Action::Stall));
    QVERIFY(waitFor([&] { return visible("updateButton").size() == 3; }));
    QVERIFY(shows(words("UnitTitle", "Unknown Device")));
    QTRY_COMPARE(misfit(), QString());
    m_bus.unplugAll();
    QVERIFY(waitFor([&] { return listed().isEmpty(); }));
    m_bus.plugBootloader()->addFault(Fault::on("erase", Fault::Action::Stall));
    QVERIFY(waitFor([&] { return shows(words("UnitTitle", "Aquen (Update)")); }));
    QTRY_COMPARE(misfit(), QString());
    const char* const job = "AquenSolvar::Device::DFUDownloadJob";
    QCOMPARE(update(), words(job, "Failed to erase flash."));
    QVERIFY(m_log->contains("ERROR", "Firmware download error: \"Failed to erase flash.\""));

    QFile file(tsFile);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QStringList notices;
    for (QString context; !xml.atEnd(); xml.readNext()) {
        if (xml.name() == "name" && xml.isStartElement())
            context = xml.readElementText();
        if (xml.name() != "source" || !xml.isStartElement())
            continue;
        QString text = words(qPrintable(context), qPrintable(xml.readElementText()));
        if (context == "AquenSolvar::Notices")
            notices << text.replace("%1", "Solvar");
        if (context != "FirmwareUpdateState" && context != job)
            continue;
        text.replace("%1", "control write error: LIBUSB_ERROR_NO_DEVICE");
        one("progressBar")->setProperty("progressBarText", text);
        QTRY_COMPARE(misfit(), QString());
        QCOMPARE(barText(), text);
    }
    reportUnopened();
    QVERIFY(notices.size() == 7 && press("doneButton"));
    for (const QString& notice : qAsConst(notices)) {
        QTRY_VERIFY(one("noticeText") != nullptr);
        one("noticeText")->setProperty("text", notice);
        QTRY_COMPARE(misfit(), QString());
    }
}

QTEST_MAIN(tst_languages)
#include "tst_languages.moc"
