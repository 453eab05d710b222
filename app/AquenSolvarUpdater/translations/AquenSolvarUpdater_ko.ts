<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>장치</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>DFU 장치</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>장치의 펌웨어를 업데이트하고 있습니다.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>USB 오류: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>펌웨어가 너무 커서 장치에 쓸 수 없습니다.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>업데이트할 장치가 없습니다.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>장치 상태를 읽지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>장치의 오류 상태를 해제하지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>펌웨어 데이터를 전송하지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>펌웨어를 전송하지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>플래시 메모리를 지우지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>장치 메모리의 섹터에 쓰지 못했습니다.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>펌웨어를 쓰는 중 오류가 발생했습니다.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>펌웨어를 쓰는 중 장치가 오류를 보고했습니다.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>펌웨어 쓰기를 완료하지 못했습니다.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>DFU 모드의 Aquen/Solvar로 전송하는 중 장치가 오류를 보고했습니다.</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>연결됨</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>알 수 없는 장치 유형</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>펌웨어가 최신 상태입니다</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>업데이트 재개</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>펌웨어 업데이트</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>부트로더 모드</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>업데이트 필요</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>장치</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>USB로 연결된 Aquen 또는 Solvar를 찾는 중</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>완료</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>펌웨어 업데이트 준비 중…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>장치 업데이트 준비 중…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>부트로더로 전환하는 중 오류가 발생했습니다.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>펌웨어 업데이트 중입니다. 장치를 분리하지 마십시오…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>펌웨어 전송을 시작하는 중 오류가 발생했습니다.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>장치 다시 시작 중…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>업데이트가 완료되었습니다.</translation>
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
        <translation>검색 중</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>알 수 없는 장치</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen(업데이트)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar(업데이트)</translation>
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
        <translation>종료</translation>
    </message>
</context>
</TS>
