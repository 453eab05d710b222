<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <extracomment>Heading in the list of units (45 letters; CJK 27): units that run normally.</extracomment>
        <translation>장치</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <extracomment>Heading in the list of units (45 letters; CJK 27): units in their bootloader, which wait for an update. DFU is the USB standard for firmware updates.</extracomment>
        <translation>DFU 장치</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <extracomment>Shown by the desktop as the reason why the computer does not go to sleep: a sentence.</extracomment>
        <translation>장치의 펌웨어를 업데이트하고 있습니다.</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed. %1 is what failed, nearly always in English, for example &quot;control write error: LIBUSB_ERROR_NO_DEVICE&quot;.</extracomment>
        <translation>USB 오류: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <extracomment>Progress bar (70 letters; CJK 40): the firmware file is larger than the memory of the unit; nothing was written.</extracomment>
        <translation>펌웨어가 너무 커서 장치에 쓸 수 없습니다.</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <extracomment>Progress bar (70 letters; CJK 40): there is no unit to write to.</extracomment>
        <translation>업데이트할 장치가 없습니다.</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not report how it is.</extracomment>
        <translation>장치 상태를 읽지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit keeps reporting an earlier error. No data of the user is meant.</extracomment>
        <translation>장치의 오류 상태를 해제하지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not take a piece of the firmware.</extracomment>
        <translation>펌웨어 데이터를 전송하지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not take the address of the next piece.</extracomment>
        <translation>펌웨어를 전송하지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not erase a part of its flash memory.</extracomment>
        <translation>플래시 메모리를 지우지 못했습니다.</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit did not respond before it wrote a sector, a part of its memory.</extracomment>
        <translation>장치 메모리의 섹터에 쓰지 못했습니다.</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error before a piece was written.</extracomment>
        <translation>펌웨어를 쓰는 중 오류가 발생했습니다.</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error after a piece was sent.</extracomment>
        <translation>펌웨어를 쓰는 중 장치가 오류를 보고했습니다.</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed at its very end, after all data was written.</extracomment>
        <translation>펌웨어 쓰기를 완료하지 못했습니다.</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <extracomment>Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an error. DFU is the USB standard for firmware updates. Stands for %1 in &quot;Caught USB exception: %1&quot;.</extracomment>
        <translation>DFU 모드의 Aquen/Solvar로 전송하는 중 장치가 오류를 보고했습니다.</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Help</name>
    <message>
        <source>Could not open %1</source>
        <extracomment>Message box: no program shows it, or it is missing. %1 is the path of a file or folder.</extracomment>
        <translation>%1을(를) 열지 못했습니다</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Notices</name>
    <message>
        <source>No valid firmware for %1: an update would fail.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): there is no valid firmware file for units of the kind %1, &quot;Aquen&quot; or &quot;Solvar&quot;. An update would begin and then fail.</extracomment>
        <translation>%1용 유효한 펌웨어가 없어 업데이트가 실패합니다.</translation>
    </message>
    <message>
        <source>Another copy of this program is running.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): this program was started twice.</extracomment>
        <translation>이 프로그램이 하나 더 실행 중입니다.</translation>
    </message>
    <message>
        <source>The log cannot be written.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): the program&apos;s own log file, which support reads.</extracomment>
        <translation>로그를 기록할 수 없습니다.</translation>
    </message>
    <message>
        <source>%1 found, but without permission to use it.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but the system does not let this person use it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1을(를) 찾았지만 사용 권한이 없습니다.</translation>
    </message>
    <message>
        <source>%1 found, but its driver is missing.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but Windows has no driver for it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1을(를) 찾았지만 드라이버가 없습니다.</translation>
    </message>
    <message>
        <source>%1 found, but another program is using it.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but another program, or another copy of this one, uses it. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1을(를) 찾았지만 다른 프로그램이 사용 중입니다.</translation>
    </message>
    <message>
        <source>%1 found, but it cannot be opened.</source>
        <extracomment>Beside &quot;Quit&quot; (60 letters; CJK 30): a unit is attached, but does not work. %1 is its kind, &quot;Aquen&quot; or &quot;Solvar&quot;.</extracomment>
        <translation>%1을(를) 찾았지만 열 수 없습니다.</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <extracomment>Card, in capitals (25 letters; CJK 15): the unit is attached to the computer.</extracomment>
        <translation>연결됨</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <extracomment>Card (35 letters; CJK 18), in place of the kind of the unit (&quot;Aquen&quot;, &quot;Solvar&quot;).</extracomment>
        <translation>알 수 없는 장치 유형</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <extracomment>Card, above the button (35 letters; CJK 18): a state, there is nothing to update.</extracomment>
        <translation>펌웨어가 최신 상태입니다</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <extracomment>Button on a card (30 letters; CJK 15): repeats an update that was interrupted.</extracomment>
        <translation>업데이트 재개</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <extracomment>Button on a card (30 letters; CJK 15): starts the update of this unit.</extracomment>
        <translation>펌웨어 업데이트</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <extracomment>Only read aloud, in place of &quot;Connected&quot;: the unit runs its bootloader, the small program that receives firmware, because an update was interrupted.</extracomment>
        <translation>부트로더 모드</translation>
    </message>
    <message>
        <source>Update needed</source>
        <extracomment>Only read aloud: the unit&apos;s firmware is old, an update is offered.</extracomment>
        <translation>업데이트 필요</translation>
    </message>
    <message>
        <source>Installed firmware: %1</source>
        <extracomment>Tooltip of a card: the firmware that the unit runs. %1 is a version, for example 1.2.0.</extracomment>
        <translation>설치된 펌웨어: %1</translation>
    </message>
    <message>
        <source>Available firmware: none</source>
        <extracomment>Tooltip of a card: there is no valid firmware file for this kind of unit.</extracomment>
        <translation>사용 가능한 펌웨어: 없음</translation>
    </message>
    <message>
        <source>Available firmware: %1</source>
        <extracomment>Tooltip of a card: the firmware that an update would write. %1 is a version, for example 1.3.1.</extracomment>
        <translation>사용 가능한 펌웨어: %1</translation>
    </message>
    <message>
        <source>USB port: %1</source>
        <extracomment>Tooltip of a card: %1 is the path of a USB port, for example 1-2.3.</extracomment>
        <translation>USB 포트: %1</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <extracomment>The name of the list of units, only read aloud.</extracomment>
        <translation>장치</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <extracomment>Middle of the empty window (45 letters; CJK 27). Aquen and Solvar are the names of the two kinds of unit.</extracomment>
        <translation>USB로 연결된 Aquen 또는 Solvar를 찾는 중</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <extracomment>Button (20 letters; CJK 10): leaves the update after its end, good or bad, for the list.</extracomment>
        <translation>완료</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the first moment of an update.</extracomment>
        <translation>펌웨어 업데이트 준비 중…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit restarts into its bootloader.</extracomment>
        <translation>장치 업데이트 준비 중…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit refused to restart into its bootloader, the small program that receives firmware.</extracomment>
        <translation>부트로더로 전환하는 중 오류가 발생했습니다.</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <extracomment>Progress bar (70 letters; CJK 40): firmware is being written; to pull the cable now would interrupt it.</extracomment>
        <translation>펌웨어 업데이트 중입니다. 장치를 분리하지 마십시오…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <extracomment>Progress bar (70 letters; CJK 40): nothing was sent to the unit, because it could not be opened or there is no firmware for it.</extracomment>
        <translation>펌웨어 전송을 시작하는 중 오류가 발생했습니다.</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit starts its new firmware.</extracomment>
        <translation>장치 다시 시작 중…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <extracomment>Progress bar (70 letters; CJK 40): the unit is back, the update has ended well.</extracomment>
        <translation>업데이트가 완료되었습니다.</translation>
    </message>
</context>
<context>
    <name>NoticeLine</name>
    <message>
        <source>Help</source>
        <extracomment>Button beside a notice (20 letters; CJK 10): opens the user&apos;s guide.</extracomment>
        <translation>도움말</translation>
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
        <extracomment>Title of the window (45 letters), the name of the program, which stays as it is.</extracomment>
        <translation>Aquen/Solvar Updater</translation>
    </message>
    <message>
        <source>Quit</source>
        <extracomment>Button below the list (20 letters; CJK 10): ends the program.</extracomment>
        <translation>종료</translation>
    </message>
    <message>
        <source>User&apos;s guide</source>
        <extracomment>Menu of the bottom bar (30 letters; CJK 15): opens the user&apos;s guide.</extracomment>
        <translation>사용자 설명서</translation>
    </message>
    <message>
        <source>Folder of the log</source>
        <extracomment>Menu of the bottom bar (30 letters; CJK 15): shows the folder of the log files.</extracomment>
        <translation>로그 폴더</translation>
    </message>
</context>
</TS>
