<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en_US">
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
        <translation>O firmware de um dispositivo está sendo atualizado.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>Erro de USB: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>O firmware é grande demais para o dispositivo.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>Nenhum dispositivo para atualizar.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>Não foi possível ler o estado do dispositivo.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>Não foi possível limpar o estado de erro do dispositivo.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>Não foi possível transferir os dados do firmware.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>Não foi possível transferir o firmware.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>Não foi possível apagar a memória flash.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>Não foi possível gravar um setor da memória do dispositivo.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>Erro ao gravar o firmware.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>O dispositivo indicou um erro ao gravar o firmware.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>Não foi possível concluir a gravação do firmware.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>O dispositivo indicou um erro durante a transferência (modo DFU).</translation>
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
        <translation>Tipo de dispositivo desconhecido</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>O firmware está atualizado</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>Retomar atualização</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>Atualizar firmware</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>No modo bootloader</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>Atualização necessária</translation>
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
        <translation>Procurando Aquen ou Solvar conectado via USB</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>Concluir</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>Preparando a atualização do firmware…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>Preparando o dispositivo para a atualização…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>Não foi possível colocar o dispositivo no modo bootloader.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>Atualizando o firmware, mantenha o dispositivo conectado…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>Erro ao iniciar a transferência do firmware.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>Reiniciando o dispositivo…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>Atualização concluída!</translation>
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
        <translation>Procurando</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>Dispositivo desconhecido</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen (atualização)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar (atualização)</translation>
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
        <translation>Sair</translation>
    </message>
</context>
</TS>
