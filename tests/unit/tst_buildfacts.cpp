#include "Common/BuildOS.h"
#include "Common/BuildType.h"
#include "Common/BuildVersion.h"
#include "Common/Logging/OSInformation.h"
#include "support/LogCapture.h"

#include <QtTest>

using Common::ArchitectureProbe;
using Common::BuildOS;
using Common::BuildType;
using Common::BuildVersion;

class BuildFactsTest : public QObject
{
    Q_OBJECT

private slots:
    void theVersionIsEncodedInOneNumber()
    {
        const QStringList parts = QStringLiteral(EXPECTED_VERSION "." EXPECTED_BUILD).split('.');
        qint64 expected = 0;
        for (const QString& part : parts)
            expected = expected * 1000 + part.toInt();
        QCOMPARE(BuildVersion::versionNumber(), expected);
        QCOMPARE(BuildVersion::versionNumberString(), QString::number(expected));
        QCOMPARE(BuildVersion::majorMinorRevisionString(), QStringLiteral(EXPECTED_VERSION));
        QCOMPARE(BuildVersion::buildNumberString(), QStringLiteral(EXPECTED_BUILD));
        QVERIFY(
            QRegularExpression("^[0-9a-f]{40}$").match(BuildVersion::buildGitCommit()).hasMatch());
    }

    void exactlyOneBuildTypeAndOneSystemHold()
    {
        const QString type = QStringLiteral(EXPECTED_TYPE);
        QCOMPARE(BuildType::buildTypeString(), type);
        QCOMPARE(BuildType::isRelease(), type == "release");
        QCOMPARE(BuildType::isPublic(), type == "release");
        QCOMPARE(BuildType::isRelease() + BuildType::isRC() + BuildType::isBeta() +
                     BuildType::isTesting(),
                 1);
        QCOMPARE(BuildOS::isWindows() + BuildOS::isMac() + BuildOS::isLinux(), 1);
#ifdef Q_OS_LINUX
        QVERIFY(BuildOS::isLinux());
        QCOMPARE(BuildOS::buildOSString(), QStringLiteral("linux"));
#endif
    }

    void theWidthComesFromTheRunningSystem()
    {
        LogCapture log({"OSInformation"});
        const QString kernel = QSysInfo::currentCpuArchitecture();
        QCOMPARE(BuildOS::buildArchitectureBitsString(),
                 kernel.contains("64") ? QStringLiteral("64") : QStringLiteral("32"));
        QCOMPARE(Common::architectureBitsText(ArchitectureProbe::Bits32), QStringLiteral("32"));
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(Common::architectureBitsText(ArchitectureProbe::Failed),
                 QStringLiteral("IsWow64Process Error"));
        QCOMPARE(log.messages(), QStringList("ERROR IsWow64Process returned an error."));
    }
};

QTEST_APPLESS_MAIN(BuildFactsTest)
#include "tst_buildfacts.moc"
