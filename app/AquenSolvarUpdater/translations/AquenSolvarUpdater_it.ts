<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>Dispositivi</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>Dispositivi DFU</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>È in corso l’aggiornamento del firmware di un dispositivo.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>Errore USB: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>Il firmware è troppo grande per il dispositivo.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>Nessun dispositivo da aggiornare.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>Impossibile leggere lo stato del dispositivo.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>Impossibile cancellare lo stato di errore del dispositivo.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>Impossibile trasferire i dati del firmware.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>Impossibile trasferire il firmware.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>Impossibile cancellare la memoria flash.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>Impossibile scrivere un settore della memoria del dispositivo.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>Errore durante la scrittura del firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>Il dispositivo segnala un errore durante la scrittura del firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>Impossibile completare la scrittura del firmware.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>Il dispositivo segnala un errore durante il trasferimento (modalità DFU).</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>Connesso</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>Tipo di dispositivo sconosciuto</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>Il firmware è aggiornato</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>Riprendi aggiornamento</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Aggiorna firmware</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>In modalità bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>Aggiornamento necessario</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>Dispositivi</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>Ricerca di Aquen o Solvar collegati tramite USB</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>Fine</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>Preparazione dell’aggiornamento del firmware…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>Preparazione del dispositivo all’aggiornamento…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>Impossibile mettere il dispositivo in modalità bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>Aggiornamento del firmware, non scollegare il dispositivo…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>Errore all’avvio del trasferimento del firmware.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>Riavvio del dispositivo…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>Aggiornamento riuscito!</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>ThreeCircleLoadingIndicator</name>
    <message>
        <source>Searching</source>
        <translation>Ricerca in corso</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>Dispositivo sconosciuto</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen (aggiornamento)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar (aggiornamento)</translation>
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
        <translation>Esci</translation>
    </message>
</context>
</TS>
