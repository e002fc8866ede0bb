<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="cs" sourcelanguage="en">
<context>
    <name>CLS_ClipCutController</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_ClipCutController.cpp" line="+163"/>
        <source>msg_export_need_marks</source>
        <translation>Nejprve nastavte obě značky</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>lab_exporting</source>
        <translation>Exportuje se klip...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_cancel</source>
        <translation>Zrušit</translation>
    </message>
    <message>
        <location line="-141"/>
        <location line="+143"/>
        <source>lab_export_clip</source>
        <translation>Exportovat klip</translation>
    </message>
    <message>
        <location line="-150"/>
        <source>lab_set_first_mark</source>
        <translation>Nastavit první značku</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_set_second_mark</source>
        <translation>Nastavit druhou značku</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>lab_clear_marks</source>
        <translation>Smazat značky</translation>
    </message>
    <message>
        <location line="+164"/>
        <source>msg_export_done_silent</source>
        <translation>Klip uložen bez zvuku: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_export_done</source>
        <translation>Klip uložen: %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_cancelled</source>
        <translation>Export zrušen</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>msg_export_wrong_password</source>
        <translation>Nesprávné heslo</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_empty</source>
        <translation>Mezi značkami není co exportovat</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_failed</source>
        <translation>Nelze zapsat %1</translation>
    </message>
</context>
<context>
    <name>CLS_DlgClipExport</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgClipExport.cpp" line="+42"/>
        <source>lab_export_clip</source>
        <translation>Exportovat klip</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>lab_export_mp4</source>
        <translation>Video MP4</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_sdv</source>
        <translation>Zapečetěné SDV (heslo)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_format</source>
        <translation>Formát</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_browse</source>
        <translation>Procházet...</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+72"/>
        <source>lab_export_target</source>
        <translation>Uložit jako</translation>
    </message>
    <message>
        <location line="-68"/>
        <source>lab_password</source>
        <translation>Heslo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_password_again</source>
        <translation>Heslo znovu</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_source_password</source>
        <translation>Heslo tohoto videa</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>btn_cancel</source>
        <translation>Zrušit</translation>
    </message>
    <message>
        <location line="+65"/>
        <location line="+2"/>
        <source>msg_export_no_target</source>
        <translation>Vyberte soubor pro uložení</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+3"/>
        <source>msg_password_empty</source>
        <translation>Zadejte heslo</translation>
    </message>
    <message>
        <location line="-2"/>
        <source>msg_password_mismatch</source>
        <translation>Hesla se neshodují</translation>
    </message>
</context>
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgQuillPlayer.ui" line="+17"/>
        <source>QuillPlayer</source>
        <translation>Přehrávač Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <location filename="../../BriskInclude/CLS_ModuleBasic.cpp" line="+29"/>
        <source>ModuleName</source>
        <translation>Místní přehrávač</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ModuleExplain</source>
        <translation>Přehrává videosoubory uložené v tomto počítači.</translation>
    </message>
</context>
<context>
    <name>CLS_VideoAreaTools</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_VideoAreaTools.cpp" line="+52"/>
        <source>lab_snapshot</source>
        <translation>Snímek</translation>
    </message>
    <message>
        <location line="+4"/>
        <location line="+89"/>
        <source>lab_snapshot_folder</source>
        <translation>Složka snímků...</translation>
    </message>
    <message>
        <location line="-86"/>
        <source>lab_zoom_reset</source>
        <translation>Obnovit přiblížení</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>lab_recorded_time</source>
        <translation>Zobrazit čas záznamu</translation>
    </message>
    <message>
        <location line="+54"/>
        <location line="+12"/>
        <source>msg_snapshot_failed</source>
        <translation>Snímek se nepodařilo uložit</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>msg_snapshot_saved</source>
        <translation>Snímek uložen:</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.ui" line="+20"/>
        <source>Form</source>
        <translation>Formulář</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.cpp" line="+40"/>
        <source>lab_history_playback</source>
        <translation>Historie přehrávání</translation>
    </message>
    <message>
        <location line="+165"/>
        <source>lab_notice</source>
        <translation>Upozornění</translation>
    </message>
    <message>
        <location line="-9"/>
        <source>msg_videopath_notexist</source>
        <translation>Videosoubor již neexistuje. Odebrat jej z historie přehrávání?</translation>
    </message>
    <message>
        <location line="-114"/>
        <source>msg_path_error</source>
        <translation>Videosoubor neexistuje.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <location filename="../../BusinessLib/WgtMsgBox/CLS_WgtMsgBox.cpp" line="+32"/>
        <source>btn_ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_cancel</source>
        <translation>Zrušit</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_yes</source>
        <translation>Ano</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_no</source>
        <translation>Ne</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_save</source>
        <translation>Uložit</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_discard</source>
        <translation>Neukládat</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_close</source>
        <translation>Zavřít</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_apply</source>
        <translation>Použít</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_retry</source>
        <translation>Opakovat</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_ignore</source>
        <translation>Ignorovat</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_abort</source>
        <translation>Přerušit</translation>
    </message>
    <message>
        <location line="+183"/>
        <source>btn_show_password</source>
        <translation>Zobrazit heslo</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_hide_password</source>
        <translation>Skrýt heslo</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.ui" line="+31"/>
        <source>Form</source>
        <translation>Formulář</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerControlBar.ui" line="+20"/>
        <source>Form</source>
        <translation>Formulář</translation>
    </message>
    <message>
        <location line="+132"/>
        <source>btn_open_file</source>
        <translation>Otevřít soubor</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>btn_frameback</source>
        <translation>Předchozí snímek</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_slow_forward</source>
        <translation>Pomaleji</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_play_pause</source>
        <translation>Přehrát/pozastavit</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_stop</source>
        <translation>Zastavit</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_fast_forward</source>
        <translation>Rychleji</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_frame_progression</source>
        <translation>Další snímek</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>btn_full_screen</source>
        <translation>Celá obrazovka</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_sound_on_off</source>
        <translation>Zapnout/vypnout zvuk</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>btn_history_table</source>
        <translation>Historie přehrávání</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.ui" line="+20"/>
        <source>Form</source>
        <translation>Formulář</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.cpp" line="+15"/>
        <source>btn_continuation</source>
        <translation>Pokračovat v přehrávání</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerMainBody.ui" line="+17"/>
        <source>Form</source>
        <translation>Formulář</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.ui" line="+14"/>
        <source>Form</source>
        <translation>Formulář</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.cpp" line="+51"/>
        <source>btn_minimize</source>
        <translation>Minimalizovat</translation>
    </message>
    <message>
        <location line="-3"/>
        <location line="+23"/>
        <source>btn_maximize</source>
        <translation>Maximalizovat</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>lab_recover</source>
        <translation>Obnovit</translation>
    </message>
    <message>
        <location line="-21"/>
        <source>btn_close_down</source>
        <translation>Zavřít</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/MainWindow.cpp" line="+206"/>
        <source>lab_open_video</source>
        <translation>Otevřít video</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_video_format</source>
        <translation>Videosoubory </translation>
    </message>
    <message>
        <location line="+231"/>
        <source>lab_notice</source>
        <translation>Upozornění</translation>
    </message>
    <message>
        <location line="-177"/>
        <source>lab_error_getvideotime</source>
        <translation>Nelze zjistit délku videa.</translation>
    </message>
    <message>
        <location line="-31"/>
        <source>msg_path_not_exist</source>
        <translation>Cesta k videu je prázdná.</translation>
    </message>
    <message>
        <location line="+24"/>
        <source>msg_failed_play_video</source>
        <translation>Video se nepodařilo přehrát.</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>msg_setting_time_error</source>
        <translation>Neplatný čas začátku, přehrává se od začátku.</translation>
    </message>
    <message>
        <location line="+250"/>
        <source>msg_function_notallow</source>
        <translation>Tato funkce není pro toto video k dispozici.</translation>
    </message>
    <message>
        <location line="+91"/>
        <source>msg_videodecrpt_notice</source>
        <translation>Šifrované video</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_decrptinput_password</source>
        <translation>Zadejte heslo k tomuto videu.</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>msg_decrpte_notice</source>
        <translation>Dešifrování se nezdařilo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_videodecript_failed</source>
        <translation>Nesprávné heslo. Zkusit znovu?</translation>
    </message>
</context>
</TS>
