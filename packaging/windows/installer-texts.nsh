; SPDX-License-Identifier: LicenseRef-Proprietary
; The languages of the program, and the texts of the installer that are its own.
!macro Texts language running older written driver line lineText
    !insertmacro MUI_LANGUAGE "${language}"
    LangString isRunning ${LANG_${language}} "${running}"
    LangString olderStays ${LANG_${language}} "${older}"
    LangString notWritten ${LANG_${language}} "${written}"
    LangString noDriver ${LANG_${language}} "${driver}"
    LangString commandLine ${LANG_${language}} "${line}"
    LangString commandLineText ${LANG_${language}} "${lineText}"
!macroend

!insertmacro Texts English \
    "Aquen/Solvar Updater is running. Let a pending update finish and close the program." \
    "The installed version could not be removed. Nothing was installed." \
    "Not all files could be written. Free some space and run the installer again." \
    "Windows did not accept the driver. Units may not be listed." \
    "Command line" "Adds the commands of the program to PATH."
!insertmacro Texts German \
    "Aquen/Solvar Updater läuft. Warten Sie das Ende einer Aktualisierung ab und schließen Sie das Programm." \
    "Die installierte Version konnte nicht entfernt werden. Es wurde nichts installiert." \
    "Nicht alle Dateien konnten geschrieben werden. Schaffen Sie Platz und starten Sie die Installation erneut." \
    "Windows hat den Treiber nicht angenommen. Geräte werden möglicherweise nicht aufgeführt." \
    "Befehlszeile" "Fügt die Befehle des Programms zu PATH hinzu."
!insertmacro Texts French \
    "Aquen/Solvar Updater est en cours d'exécution. Attendez la fin de la mise à jour et fermez le programme." \
    "La version installée n'a pas pu être supprimée. Rien n'a été installé." \
    "Certains fichiers n'ont pas pu être écrits. Libérez de l'espace et relancez l'installation." \
    "Windows n'a pas accepté le pilote. Certains appareils peuvent ne pas apparaître." \
    "Ligne de commande" "Ajoute les commandes du programme à PATH."
!insertmacro Texts Spanish \
    "Aquen/Solvar Updater se está ejecutando. Espere a que termine la actualización y cierre el programa." \
    "No se pudo quitar la versión instalada. No se ha instalado nada." \
    "No se pudieron escribir todos los archivos. Libere espacio y vuelva a ejecutar el instalador." \
    "Windows no aceptó el controlador. Es posible que algunos equipos no aparezcan." \
    "Línea de comandos" "Agrega los comandos del programa a PATH."
!insertmacro Texts Italian \
    "Aquen/Solvar Updater è in esecuzione. Attendere la fine dell'aggiornamento e chiudere il programma." \
    "Impossibile rimuovere la versione installata. Non è stato installato nulla." \
    "Impossibile scrivere tutti i file. Liberare spazio e avviare di nuovo l'installazione." \
    "Windows non ha accettato il driver. Alcune unità potrebbero non comparire." \
    "Riga di comando" "Aggiunge i comandi del programma a PATH."
!insertmacro Texts Japanese \
    "Aquen/Solvar Updater が実行中です。更新の完了を待ってから、プログラムを終了してください。" \
    "インストール済みのバージョンを削除できませんでした。何もインストールされていません。" \
    "一部のファイルを書き込めませんでした。空き容量を増やして、もう一度インストールしてください。" \
    "Windows がドライバーを受け付けませんでした。機器が一覧に表示されない場合があります。" \
    "コマンドライン" "プログラムのコマンドを PATH に追加します。"
!insertmacro Texts Korean \
    "Aquen/Solvar Updater가 실행 중입니다. 업데이트가 끝난 후 프로그램을 닫으십시오." \
    "설치된 버전을 제거하지 못했습니다. 아무것도 설치되지 않았습니다." \
    "일부 파일을 쓰지 못했습니다. 공간을 확보한 후 설치 프로그램을 다시 실행하십시오." \
    "Windows가 드라이버를 받아들이지 않았습니다. 장치가 목록에 표시되지 않을 수 있습니다." \
    "명령줄" "프로그램의 명령을 PATH에 추가합니다."
!insertmacro Texts SimpChinese \
    "Aquen/Solvar Updater 正在运行。请等待更新完成，然后关闭程序。" \
    "无法删除已安装的版本。未安装任何内容。" \
    "部分文件无法写入。请释放空间，然后重新运行安装程序。" \
    "Windows 未接受驱动程序。设备可能不会列出。" \
    "命令行" "将程序的命令添加到 PATH。"
!insertmacro Texts PortugueseBR \
    "O Aquen/Solvar Updater está em execução. Aguarde o fim da atualização e feche o programa." \
    "Não foi possível remover a versão instalada. Nada foi instalado." \
    "Não foi possível gravar todos os arquivos. Libere espaço e execute o instalador novamente." \
    "O Windows não aceitou o driver. Alguns aparelhos podem não aparecer." \
    "Linha de comando" "Adiciona os comandos do programa ao PATH."
