import QtQuick 2.9
import QtTest 1.2
import AquenSolvar 1.0
import AquenSolvar.Device 1.0
import AquenSolvar.Tasks 1.0
import Common 1.0
import Common.File 1.0
import QsLog 1.0
import SLog 1.0
import USB 1.0

// Each native type that documents may use, in one document: it loads only when all are registered.
TestCase {
    id: test
    name: "Registration"

    AqSolWatcher { id: watcher }
    AquenSolvarListModel { id: listModel }
    AquenSolvarFilterProxyModel { id: proxyModel }
    AquenSolvarFirmwareUpdateTask { id: task }
    LibusbDeviceEnumerator { id: enumerator }
    FontHelper { id: fonts }
    SignalSpy { id: fontSpy; target: fonts; signalName: "fontChanged" }
    SignalSpy { id: autoRemoveSpy; signalName: "autoRemoveChanged" }
    Component { id: directory; TemporaryDirWrapper {} }
    Text { id: label; font: fonts.boldFont; text: "Aquen" }

    function test_singletons_answer() {
        verify(AquenSolvarTaskFactory.makeFirmwareUploadTask(null) !== undefined);
        verify(BuildOS.buildOSString().length > 0);
        verify(BuildType.buildTypeString().length > 0);
        verify(BuildVersion.versionNumberString().length > 0);
        compare(CppToQml.qml_assert(false, "method", "file", 1, "message"), undefined);
        compare(FileIO.readFile("/nowhere/at/all"), "");
        verify(Paths.resourceDirectory().length > 0);
        compare(SLog.track("Nobody listens", { so: "nothing happens" }), undefined);
        compare(SLog.stopLogging(), undefined);
        verify(QsLogHelpers.qml_RelativeSrcDir("qrc:/qml/main.qml").length > 0);
    }

    function test_objects_can_be_made() {
        compare(task.progress, 0);
        compare(listModel.rowCount(), 0);
        compare(proxyModel.rowCount(), 0);
        verify(watcher && enumerator);
    }

    function test_enumerations() {
        compare([Device.AQUEN, Device.AQUEN_DFU, Device.SOLVAR, Device.SOLVAR_DFU].length, 4);
        compare([PrinterCompatibility.MendrelNoUpdate, PrinterCompatibility.FirmwareOptionalUpdate,
                 PrinterCompatibility.CompatMendrelUpdate], [1, 7, 13]);
    }

    function test_pointers_have_their_names_data() {
        return ["Tasks::AquenSolvarFirmwareUpdateTask*", "Device::AquenSolvarDfuDevice*",
                "Device::I_Device*", "PrinterCompatibility*",
                "AquenSolvar::AquenSolvarListModel*", "AquenSolvar::Device::I_Device*",
                "QQmlListProperty<AquenSolvar::Device::I_Device>",
                "QQmlListProperty<Common::FontHelper>"].map(function (name) {
                    return { tag: name };
                });
    }

    function test_pointers_have_their_names(row) {
        verify(probe.isKnownMetaType(row.tag));
    }

    function test_fonts() {
        compare(fonts.font.family, "Open Sans");
        verify(!fonts.font.bold);
        compare(fonts.boldFont.family, "Open Sans");
        verify(fonts.boldFont.bold);
        compare(label.font.family, "Open Sans");
        fonts.fontChanged();
        compare(fontSpy.count, 1);
    }

    function test_temporary_directory_data() {
        return [{ tag: "removed", autoRemove: true }, { tag: "kept", autoRemove: false }];
    }

    function test_temporary_directory(row) {
        var temporary = directory.createObject(test);
        autoRemoveSpy.target = temporary;
        autoRemoveSpy.clear();
        verify(temporary.autoRemove);
        temporary.autoRemove = row.autoRemove;
        temporary.autoRemove = row.autoRemove;
        compare(autoRemoveSpy.count, 2);

        var path = temporary.path;
        var file = path + "/note";
        verify(FileIO.writeFile(file, "text"));
        autoRemoveSpy.target = null;
        temporary.destroy();
        wait(0);
        compare(FileIO.readFile(file), row.autoRemove ? "" : "text");
        if (!row.autoRemove)
            verify(probe.removeDirectory(path));
    }
}
