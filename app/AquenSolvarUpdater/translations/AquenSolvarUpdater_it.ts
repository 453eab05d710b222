<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <extracomment>Heading in the list of units (45 letters; CJK 27): units that run normally.</extracomment>
        <translation>Dispositivi</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <extracomment>Heading in the list of units (45 letters; CJK 27): units in their bootloader, which wait for an update. DFU is the USB standard for firmware updates.</extracomment>
        <translation>Dispositivi DFU</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <extracomment>Shown by the desktop as the reason why the computer does not go to sleep: a sentence.</extracomment>
        <translation>È in corso l’aggiornamento del firmware di un dispositivo.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed. %1 is what failed, nearly always in English, for example &quot;control write error: LIBUSB_ERROR_NO_DEVICE&quot;.</extracomment>
        <translation>Errore USB: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <extracomment>Progress bar (70 letters; CJK 40): the firmware file is larger than the memory of the unit; nothing was written.</extracomment>
        <translation>Il firmware è troppo grande per il dispositivo.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <extracomment>Progress bar (70 letters; CJK 40): there is no unit to write to.</extracomment>
        <translation>Nessun dispositivo da aggiornare.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not report how it is.</extracomment>
        <translation>Impossibile leggere lo stato del dispositivo.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit keeps reporting an earlier error. No data of the user is meant.</extracomment>
        <translation>Impossibile cancellare lo stato di errore del dispositivo.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not take a piece of the firmware.</extracomment>
        <translation>Impossibile trasferire i dati del firmware.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not take the address of the next piece.</extracomment>
        <translation>Impossibile trasferire il firmware.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not erase a part of its flash memory.</extracomment>
        <translation>Impossibile cancellare la memoria flash.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not respond before it wrote a sector, a part of its memory.</extracomment>
        <translation>Impossibile scrivere un settore della memoria del dispositivo.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error before a piece was written.</extracomment>
        <translation>Errore durante la scrittura del firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error after a piece was sent.</extracomment>
        <translation>Il dispositivo segnala un errore durante la scrittura del firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed at its very end, after all data was written.</extracomment>
        <translation>Impossibile completare la scrittura del firmware.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error. DFU is the USB standard for firmware updates. Stands for %1 in &quot;Caught USB exception: %1&quot;.</extracomment>
        <translation>Il dispositivo segnala un errore durante il trasferimento (modalità DFU).</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Help</name>
    <message>
        <source>Could not open %1</source>
        <extracomment>Message box: no program shows it, or it is missing. %1 is the path of a file or folder.</extracomment>
        <translation>Impossibile aprire %1</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Notices</name>
    <message>
        <source>No valid firmware for %1: an update would fail.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): there is no valid firmware file for units of the kind %1, &quot;Aquen&quot; or &quot;Solvar&quot;. An update would begin and then fail.</extracomment>
        <translation>Nessun firmware valido per %1: l’aggiornamento non riuscirebbe.</translation>
    </message>
    <message>
        <source>Another copy of this program is running.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): this program was started twice.</extracomment>
        <translation>È aperta un’altra copia di questo programma.</translation>
    </message>
    <message>
        <source>The log cannot be written.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): the program&apos;s own log file, which support reads.</extracomment>
        <translation>Impossibile scrivere il file di log.</translation>
    </message>
    <message>
        <source>%1 found, but without permission to use it.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but the system does not let this person use it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 rilevato, ma manca l’autorizzazione per usarlo.</translation>
    </message>
    <message>
        <source>%1 found, but its driver is missing.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but Windows has no driver for it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 rilevato, ma manca il driver.</translation>
    </message>
    <message>
        <source>%1 found, but another program is using it.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but another program, or another copy of this one, uses it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 rilevato, ma è in uso da un altro programma.</translation>
    </message>
    <message>
        <source>%1 found, but it cannot be opened.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but does not work. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 rilevato, ma non può essere aperto.</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <extracomment>Card, in capitals (25 letters; CJK 15): the unit is attached to the computer.</extracomment>
        <translation>Connesso</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <extracomment>Card (35 letters; CJK 18), in place of the kind of the unit (&quot;Aquen&quot;, &quot;Solvar&quot;).</extracomment>
        <translation>Tipo di dispositivo sconosciuto</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <extracomment>Card, above the button (35 letters; CJK 18): a state, there is nothing to update.</extracomment>
        <translation>Il firmware è aggiornato</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <extracomment>Button on a card (30 letters; CJK 15): repeats an update that was interrupted.</extracomment>
        <translation>Riprendi aggiornamento</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <extracomment>Button on a card (30 letters; CJK 15): starts the update of this unit.</extracomment>
        <translation>Aggiorna firmware</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <extracomment>Only read aloud, in place of &quot;Connected&quot;: the unit runs its bootloader, the small program that receives firmware, because an update was interrupted.</extracomment>
        <translation>In modalità bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <extracomment>Only read aloud: the unit&apos;s firmware is old, an update is offered.</extracomment>
        <translation>Aggiornamento necessario</translation>
    </message>
    <message>
        <source>Installed firmware: %1</source>
        <extracomment>Tooltip of a card: the firmware that the unit runs. %1 is a version, for example 1.2.0.</extracomment>
        <translation>Firmware installato: %1</translation>
    </message>
    <message>
        <source>Available firmware: none</source>
        <extracomment>Tooltip of a card: there is no valid firmware file for this kind of unit.</extracomment>
        <translation>Firmware disponibile: nessuno</translation>
    </message>
    <message>
        <source>Available firmware: %1</source>
        <extracomment>Tooltip of a card: the firmware that an update would write. %1 is a version, for example 1.3.1.</extracomment>
        <translation>Firmware disponibile: %1</translation>
    </message>
    <message>
        <source>USB port: %1</source>
        <extracomment>Tooltip of a card: %1 is the path of a USB port, for example 1-2.3.</extracomment>
        <translation>Porta USB: %1</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <extracomment>The name of the list of units, only read aloud.</extracomment>
        <translation>Dispositivi</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <extracomment>Middle of the empty window (45 letters; CJK 27). Aquen and Solvar are the names of the two kinds of unit.</extracomment>
        <translation>Ricerca di Aquen o Solvar collegati tramite USB</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <extracomment>Button (20 letters; CJK 10): leaves the update after its end, good or bad, for the list.</extracomment>
        <translation>Fine</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the first moment of an update.</extracomment>
        <translation>Preparazione dell’aggiornamento del firmware…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit restarts into its bootloader.</extracomment>
        <translation>Preparazione del dispositivo all’aggiornamento…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit refused to restart into its bootloader, the small program that receives firmware.</extracomment>
        <translation>Impossibile mettere il dispositivo in modalità bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <extracomment>Progress bar (70 letters; CJK 40): firmware is being written; to pull the cable now would interrupt it.</extracomment>
        <translation>Aggiornamento del firmware, non scollegare il dispositivo…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): nothing was sent to the unit, because it could not be opened or there is no firmware for it.</extracomment>
        <translation>Errore all’avvio del trasferimento del firmware.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit starts its new firmware.</extracomment>
        <translation>Riavvio del dispositivo…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit is back, the update has ended well.</extracomment>
        <translation>Aggiornamento riuscito!</translation>
    </message>
</context>
<context>
    <name>NoticeLine</name>
    <message>
        <source>Help</source>
        <extracomment>Button beside a notice (20 letters; CJK 10): opens the user&apos;s guide.</extracomment>
        <translation>Guida</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>%1%</source>
        <extracomment>How full the progress bar is, only read aloud. %1 is a whole number from 0 to 100. With the space, if any, that the language puts before the sign.</extracomment>
        <translation>%1%</translation>
    </message>
</context>
<context>
    <name>ThreeCircleLoadingIndicator</name>
    <message>
        <source>Searching</source>
        <extracomment>The name of three moving dots, only read aloud: the program looks for units.</extracomment>
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
        <extracomment>Title of the window (45 letters), the name of the program, which stays as it is.</extracomment>
        <translation>Aquen/Solvar Updater</translation>
    </message>
    <message>
        <source>Quit</source>
        <extracomment>Button below the list (20 letters; CJK 10): ends the program.</extracomment>
        <translation>Esci</translation>
    </message>
    <message>
        <source>User&apos;s guide</source>
        <extracomment>Menu of the bottom bar (30 letters; CJK 15): opens the user&apos;s guide.</extracomment>
        <translation>Guida per l’utente</translation>
    </message>
    <message>
        <source>Folder of the log</source>
        <extracomment>Menu of the bottom bar (30 letters; CJK 15): shows the folder of the log files.</extracomment>
        <translation>Cartella del registro</translation>
    </message>
</context>
</TS>
