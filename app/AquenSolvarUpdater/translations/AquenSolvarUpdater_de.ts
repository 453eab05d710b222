<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>DFU-Geräte</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>Die Firmware eines Geräts wird aktualisiert.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>USB-Fehler: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>Die Firmware ist zu groß für das Gerät.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>Kein Gerät zum Aktualisieren vorhanden.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>Gerätestatus konnte nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>Fehlerstatus des Geräts konnte nicht zurückgesetzt werden.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>Firmware-Daten konnten nicht übertragen werden.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>Firmware konnte nicht übertragen werden.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>Flash-Speicher konnte nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>Ein Sektor des Gerätespeichers konnte nicht beschrieben werden.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>Fehler beim Schreiben der Firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>Das Gerät meldet einen Fehler beim Schreiben der Firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>Das Schreiben der Firmware konnte nicht abgeschlossen werden.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>Das Gerät meldet einen Fehler bei der Übertragung (DFU-Modus).</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>Unbekannter Gerätetyp</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>Firmware aktuell</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>Update fortsetzen</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Firmware aktualisieren</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>Im Bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>Update erforderlich</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>Geräte</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>Suche nach Aquen oder Solvar am USB-Anschluss</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>Firmware-Update wird vorbereitet…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>Gerät wird auf das Update vorbereitet…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>Fehler beim Wechsel in den Bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>Firmware wird aktualisiert, bitte Gerät verbunden lassen…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>Fehler beim Start der Firmware-Übertragung.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>Gerät wird neu gestartet…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>Update erfolgreich!</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>%1%</source>
        <translation>%1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>ThreeCircleLoadingIndicator</name>
    <message>
        <source>Searching</source>
        <translation>Suche läuft</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>Unbekanntes Gerät</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen (Update)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar (Update)</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Aquen/Solvar Updater</source>
        <translation>Aquen/Solvar Updater</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
</context>
</TS>
