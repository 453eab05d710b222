<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>Appareils</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>Appareils DFU</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>Le firmware d’un appareil est en cours de mise à jour.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>Erreur USB&#xa0;: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>Le firmware est trop volumineux pour l’appareil.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>Aucun appareil à mettre à jour.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>Impossible de lire l’état de l’appareil.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>Impossible d’effacer l’état d’erreur de l’appareil.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>Impossible de transférer les données du firmware.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>Impossible de transférer le firmware.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>Impossible d’effacer la mémoire flash.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>Impossible d’écrire un secteur de la mémoire de l’appareil.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>Erreur lors de l’écriture du firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>L’appareil signale une erreur lors de l’écriture du firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>Impossible de terminer l’écriture du firmware.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>L’appareil signale une erreur lors du transfert (mode DFU).</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>Type d’appareil inconnu</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>Firmware à jour</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>Reprendre la mise à jour</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Mettre à jour le firmware</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>En mode bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>Mise à jour nécessaire</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>Appareils</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>Recherche d’un appareil Aquen ou Solvar en USB</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>Préparation de la mise à jour du firmware…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>Préparation de l’appareil à la mise à jour…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>Erreur lors du passage en mode bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>Mise à jour du firmware, laissez l’appareil connecté…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>Erreur au démarrage du transfert du firmware.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>Redémarrage de l’appareil…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>Mise à jour réussie&#xa0;!</translation>
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
        <translation>Aquen/Solvar Updater</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
</context>
</TS>
