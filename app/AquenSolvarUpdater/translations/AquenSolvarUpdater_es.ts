<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>Dispositivos</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>Dispositivos DFU</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>Se está actualizando el firmware de un dispositivo.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>Error de USB: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>El firmware es demasiado grande para el dispositivo.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>No hay ningún dispositivo que actualizar.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>No se pudo leer el estado del dispositivo.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>No se pudo borrar el estado de error del dispositivo.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>No se pudieron transferir los datos del firmware.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>No se pudo transferir el firmware.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>No se pudo borrar la memoria flash.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>No se pudo escribir un sector de la memoria del dispositivo.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>Error al escribir el firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>El dispositivo indica un error al escribir el firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>No se pudo finalizar la escritura del firmware.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>El dispositivo indica un error durante la transferencia (modo DFU).</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>Conectado</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>Tipo de dispositivo desconocido</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>El firmware está al día</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>Reanudar actualización</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Actualizar firmware</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>En modo bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>Actualización necesaria</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>Dispositivos</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>Buscando Aquen o Solvar conectado por USB</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>Listo</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>Preparando la actualización del firmware…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>Preparando el dispositivo para la actualización…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>No se pudo poner el dispositivo en modo bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>Actualizando el firmware, no desconecte el dispositivo…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>Error al iniciar la transferencia del firmware.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>Reiniciando el dispositivo…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>¡Actualización completada!</translation>
    </message>
</context>
<context>
    <name>ProgressBar</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>ThreeCircleLoadingIndicator</name>
    <message>
        <source>Searching</source>
        <translation>Buscando</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>Dispositivo desconocido</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen (actualización)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar (actualización)</translation>
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
        <translation>Salir</translation>
    </message>
</context>
</TS>
