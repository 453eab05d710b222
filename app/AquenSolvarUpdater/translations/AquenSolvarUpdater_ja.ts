<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en_US">
<context>
    <name>AquenSolvar::Device::AquenSolvarDevice</name>
    <message>
        <source>Devices</source>
        <translation>デバイス</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::AquenSolvarDfuDevice</name>
    <message>
        <source>DFU Devices</source>
        <translation>DFU デバイス</translation>
    </message>
</context>
<context>
    <name>AquenSolvar::Device::DFUDownloadJob</name>
    <message>
        <source>A unit&apos;s firmware is being updated.</source>
        <translation>デバイスのファームウェアをアップデートしています。</translation>
    </message>
    <message>
        <source>Caught USB exception: %1</source>
        <translation>USB エラー: %1</translation>
    </message>
    <message>
        <source>Too much data to complete upload.</source>
        <translation>ファームウェアが大きすぎて、デバイスに書き込めません。</translation>
    </message>
    <message>
        <source>No device to update.</source>
        <translation>アップデートするデバイスがありません。</translation>
    </message>
    <message>
        <source>Failed to read device status.</source>
        <translation>デバイスの状態を読み取れませんでした。</translation>
    </message>
    <message>
        <source>Failed to clear device status.</source>
        <translation>デバイスのエラー状態を解除できませんでした。</translation>
    </message>
    <message>
        <source>Failed to upload firmware data.</source>
        <translation>ファームウェアのデータを転送できませんでした。</translation>
    </message>
    <message>
        <source>Failed to upload firmware.</source>
        <translation>ファームウェアを転送できませんでした。</translation>
    </message>
    <message>
        <source>Failed to erase flash.</source>
        <translation>フラッシュメモリを消去できませんでした。</translation>
    </message>
    <message>
        <source>Failed to flash device sector.</source>
        <translation>デバイスのメモリのセクターに書き込めませんでした。</translation>
    </message>
    <message>
        <source>Error while flashing firmware.</source>
        <translation>ファームウェアの書き込み中にエラーが発生しました。</translation>
    </message>
    <message>
        <source>Error state while flashing firmware.</source>
        <translation>ファームウェアの書き込み中にデバイスがエラーを報告しました。</translation>
    </message>
    <message>
        <source>Failed to finalize firmware flashing.</source>
        <translation>ファームウェアの書き込みを完了できませんでした。</translation>
    </message>
    <message>
        <source>Error state while downloading to Aquen/Solvar in &quot;DFU&quot; mode.</source>
        <translation>DFU モードの Aquen/Solvar への転送中に、デバイスがエラーを報告しました。</translation>
    </message>
</context>
<context>
    <name>DeviceInfoContents</name>
    <message>
        <source>Connected</source>
        <translation>接続済み</translation>
    </message>
    <message>
        <source>Unknown Device Type</source>
        <translation>不明な種類のデバイス</translation>
    </message>
    <message>
        <source>Firmware Up To Date</source>
        <translation>ファームウェアは最新です</translation>
    </message>
    <message>
        <source>Resume Update</source>
        <translation>アップデートを再開</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>ファームウェアをアップデート</translation>
    </message>
    <message>
        <source>In its bootloader</source>
        <translation>ブートローダーで動作中</translation>
    </message>
    <message>
        <source>Update needed</source>
        <translation>アップデートが必要</translation>
    </message>
</context>
<context>
    <name>DeviceListView</name>
    <message>
        <source>Devices</source>
        <translation>デバイス</translation>
    </message>
    <message>
        <source>Looking for Aquen or Solvar connected via USB</source>
        <translation>USB 接続の Aquen または Solvar を探しています</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateState</name>
    <message>
        <source>Done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Preparing to update firmware…</source>
        <translation>ファームウェアのアップデートを準備しています…</translation>
    </message>
    <message>
        <source>Preparing device to receive update…</source>
        <translation>デバイスをアップデート用に準備しています…</translation>
    </message>
    <message>
        <source>Error while dropping to boot loader.</source>
        <translation>ブートローダーへの切り替え中にエラーが発生しました。</translation>
    </message>
    <message>
        <source>Updating firmware, please leave device connected…</source>
        <translation>ファームウェアをアップデートしています。デバイスを取り外さないでください…</translation>
    </message>
    <message>
        <source>Error while starting to upload the firmware.</source>
        <translation>ファームウェアの転送開始時にエラーが発生しました。</translation>
    </message>
    <message>
        <source>Restarting device…</source>
        <translation>デバイスを再起動しています…</translation>
    </message>
    <message>
        <source>Update successful!</source>
        <translation>アップデートが完了しました。</translation>
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
        <translation>検索中</translation>
    </message>
</context>
<context>
    <name>UnitTitle</name>
    <message>
        <source>Unknown Device</source>
        <extracomment>Title of a card (30 letters; CJK 15): a unit that did not report its name.</extracomment>
        <translation>不明なデバイス</translation>
    </message>
    <message>
        <source>Aquen (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for an update. Aquen is a name.</extracomment>
        <translation>Aquen (アップデート)</translation>
    </message>
    <message>
        <source>Solvar (Update)</source>
        <extracomment>Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an update. Solvar is a name.</extracomment>
        <translation>Solvar (アップデート)</translation>
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
        <translation>終了</translation>
    </message>
</context>
</TS>
