<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>设备</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>DFU 设备</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>正在更新设备固件。</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>USB 错误：%1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>固件过大，设备无法容纳。</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>没有可更新的设备。</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>无法读取设备状态。</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>无法清除设备的错误状态。</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>无法传输固件数据。</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>无法传输固件。</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>无法擦除闪存。</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>无法写入设备的闪存扇区。</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>写入固件时出错。</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>写入固件时设备报告错误。</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>无法完成固件写入。</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>向 DFU 模式的 Aquen/Solvar 传输数据时，设备报告错误。</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>未知设备类型</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>固件已是最新版本</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>继续更新</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>更新固件</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>处于引导加载程序模式</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>需要更新</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>设备</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>正在查找通过 USB 连接的 Aquen 或 Solvar</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>正在准备更新固件…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>正在准备设备以接收更新…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>切换到引导加载程序时出错。</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>正在更新固件，请保持设备连接…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>开始传输固件时出错。</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>正在重新启动设备…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>更新成功！</translation>
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
        <translation>正在查找</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>未知设备</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen（更新）</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar（更新）</translation>
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
        <translation>退出</translation>
    </message>
</context>
</TS>
