<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <extracomment>Heading in the list of units (45 letters; CJK 27): units that run normally.</extracomment>
        <translation>Appareils</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <extracomment>Heading in the list of units (45 letters; CJK 27): units in their bootloader, which wait for an update. DFU is the USB standard for firmware updates.</extracomment>
        <translation>Appareils DFU</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <extracomment>Shown by the desktop as the reason why the computer does not go to sleep: a sentence.</extracomment>
        <translation>Le firmware d’un appareil est en cours de mise à jour.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed. %1 is what failed, nearly always in English, for example &quot;control write error: LIBUSB_ERROR_NO_DEVICE&quot;.</extracomment>
        <translation>Erreur USB&#xa0;: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <extracomment>Progress bar (70 letters; CJK 40): the firmware file is larger than the memory of the unit; nothing was written.</extracomment>
        <translation>Le firmware est trop volumineux pour l’appareil.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <extracomment>Progress bar (70 letters; CJK 40): there is no unit to write to.</extracomment>
        <translation>Aucun appareil à mettre à jour.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not report how it is.</extracomment>
        <translation>Impossible de lire l’état de l’appareil.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit keeps reporting an earlier error. No data of the user is meant.</extracomment>
        <translation>Impossible d’effacer l’état d’erreur de l’appareil.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not take a piece of the firmware.</extracomment>
        <translation>Impossible de transférer les données du firmware.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not take the address of the next piece.</extracomment>
        <translation>Impossible de transférer le firmware.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not erase a part of its flash memory.</extracomment>
        <translation>Impossible d’effacer la mémoire flash.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not respond before it wrote a sector, a part of its memory.</extracomment>
        <translation>Impossible d’écrire dans un secteur de la mémoire de l’appareil.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error before a piece was written.</extracomment>
        <translation>Erreur lors de l’écriture du firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error after a piece was sent.</extracomment>
        <translation>L’appareil signale une erreur lors de l’écriture du firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed at its very end, after all data was written.</extracomment>
        <translation>Impossible de terminer l’écriture du firmware.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error. DFU is the USB standard for firmware updates. Stands for %1 in &quot;Caught USB exception: %1&quot;.</extracomment>
        <translation>L’appareil signale une erreur lors du transfert (mode DFU).</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Help</name>
    <message>
        <source>Could not open %1</source>
        <extracomment>Message box: no program shows it, or it is missing. %1 is the path of a file or folder.</extracomment>
        <translation>Impossible d’ouvrir %1</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Notices</name>
    <message>
        <source>No valid firmware for %1: an update would fail.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): there is no valid firmware file for units of the kind %1, &quot;Aquen&quot; or &quot;Solvar&quot;. An update would begin and then fail.</extracomment>
        <translation>Aucun firmware valide pour %1&#xa0;: la mise à jour échouerait.</translation>
    </message>
    <message>
        <source>Another copy of this program is running.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): this program was started twice.</extracomment>
        <translation>Une autre instance de ce programme est ouverte.</translation>
    </message>
    <message>
        <source>The log cannot be written.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): the program&apos;s own log file, which support reads.</extracomment>
        <translation>Impossible d’écrire le journal.</translation>
    </message>
    <message>
        <source>%1 found, but without permission to use it.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but the system does not let this person use it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 détecté, mais vous n’êtes pas autorisé à l’utiliser.</translation>
    </message>
    <message>
        <source>%1 found, but its driver is missing.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but Windows has no driver for it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 détecté, mais son pilote est manquant.</translation>
    </message>
    <message>
        <source>%1 found, but another program is using it.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but another program, or another copy of this one, uses it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 détecté, mais un autre programme l’utilise.</translation>
    </message>
    <message>
        <source>%1 found, but it cannot be opened.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but does not work. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1 détecté, mais impossible de l’ouvrir.</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <extracomment>Card, in capitals (25 letters; CJK 15): the unit is attached to the computer.</extracomment>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <extracomment>Card (35 letters; CJK 18), in place of the kind of the unit (&quot;Aquen&quot;, &quot;Solvar&quot;).</extracomment>
        <translation>Type d’appareil inconnu</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <extracomment>Card, above the button (35 letters; CJK 18): a state, there is nothing to update.</extracomment>
        <translation>Firmware à jour</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <extracomment>Button on a card (30 letters; CJK 15): repeats an update that was interrupted.</extracomment>
        <translation>Reprendre la mise à jour</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <extracomment>Button on a card (30 letters; CJK 15): starts the update of this unit.</extracomment>
        <translation>Mettre à jour le firmware</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <extracomment>Only read aloud, in place of &quot;Connected&quot;: the unit runs its bootloader, the small program that receives firmware, because an update was interrupted.</extracomment>
        <translation>En mode bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <extracomment>Only read aloud: the unit&apos;s firmware is old, an update is offered.</extracomment>
        <translation>Mise à jour nécessaire</translation>
    </message>
    <message>
        <source>Installed firmware: %1</source>
        <extracomment>Tooltip of a card: the firmware that the unit runs. %1 is a version, for example 1.2.0.</extracomment>
        <translation>Firmware installé : %1</translation>
    </message>
    <message>
        <source>Available firmware: none</source>
        <extracomment>Tooltip of a card: there is no valid firmware file for this kind of unit.</extracomment>
        <translation>Firmware disponible : aucun</translation>
    </message>
    <message>
        <source>Available firmware: %1</source>
        <extracomment>Tooltip of a card: the firmware that an update would write. %1 is a version, for example 1.3.1.</extracomment>
        <translation>Firmware disponible : %1</translation>
    </message>
    <message>
        <source>USB port: %1</source>
        <extracomment>Tooltip of a card: %1 is the path of a USB port, for example 1-2.3.</extracomment>
        <translation>Port USB : %1</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <extracomment>The name of the list of units, only read aloud.</extracomment>
        <translation>Appareils</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <extracomment>Middle of the empty window (45 letters; CJK 27). Aquen and Solvar are the names of the two kinds of unit.</extracomment>
        <translation>Recherche d’un appareil Aquen ou Solvar par USB</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <extracomment>Button (20 letters; CJK 10): leaves the update after its end, good or bad, for the list.</extracomment>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the first moment of an update.</extracomment>
        <translation>Préparation de la mise à jour du firmware…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit restarts into its bootloader.</extracomment>
        <translation>Préparation de l’appareil à la mise à jour…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit refused to restart into its bootloader, the small program that receives firmware.</extracomment>
        <translation>Erreur lors du passage en mode bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <extracomment>Progress bar (70 letters; CJK 40): firmware is being written; to pull the cable now would interrupt it.</extracomment>
        <translation>Mise à jour du firmware, laissez l’appareil connecté…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): nothing was sent to the unit, because it could not be opened or there is no firmware for it.</extracomment>
        <translation>Erreur au démarrage du transfert du firmware.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit starts its new firmware.</extracomment>
        <translation>Redémarrage de l’appareil…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit is back, the update has ended well.</extracomment>
        <translation>Mise à jour réussie&#xa0;!</translation>
    </message>
</context>
<context>
    <name>NoticeLine</name>
    <message>
        <source>Help</source>
        <extracomment>Button beside a notice (20 letters; CJK 10): opens the user&apos;s guide.</extracomment>
        <translation>Aide</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>%1%</source>
        <extracomment>How full the progress bar is, only read aloud. %1 is a whole number from 0 to 100. With the space, if any, that the language puts before the sign.</extracomment>
        <translation>%1&#xa0;%</translation>
    </message>
</context>
<context>
    <name>ThreeCircleLoadingIndicator</name>
    <message>
        <source>Searching</source>
        <extracomment>The name of three moving dots, only read aloud: the program looks for units.</extracomment>
        <translation>Recherche en cours</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>Appareil inconnu</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen (mise à jour)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar (mise à jour)</translation>
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
        <translation>Quitter</translation>
    </message>
    <message>
        <source>User&apos;s guide</source>
        <extracomment>Menu of the bottom bar (30 letters; CJK 15): opens the user&apos;s guide.</extracomment>
        <translation>Guide de l’utilisateur</translation>
    </message>
    <message>
        <source>Folder of the log</source>
        <extracomment>Menu of the bottom bar (30 letters; CJK 15): shows the folder of the log files.</extracomment>
        <translation>Dossier du journal</translation>
    </message>
</context>
</TS>
