<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl" sourcelanguage="en">
<context>
    <name>CLS_ClipCutController</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_ClipCutController.cpp" line="+163"/>
        <source>msg_export_need_marks</source>
        <translation>Najpierw ustaw oba znaczniki</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>lab_exporting</source>
        <translation>Eksportowanie klipu...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <location line="-141"/>
        <location line="+143"/>
        <source>lab_export_clip</source>
        <translation>Eksportuj klip</translation>
    </message>
    <message>
        <location line="-150"/>
        <source>lab_set_first_mark</source>
        <translation>Ustaw pierwszy znacznik</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_set_second_mark</source>
        <translation>Ustaw drugi znacznik</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>lab_clear_marks</source>
        <translation>Usuń znaczniki</translation>
    </message>
    <message>
        <location line="+164"/>
        <source>msg_export_done_silent</source>
        <translation>Zapisano klip bez dźwięku: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_export_done</source>
        <translation>Zapisano klip: %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_cancelled</source>
        <translation>Eksport anulowany</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>msg_export_wrong_password</source>
        <translation>Nieprawidłowe hasło</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_empty</source>
        <translation>Brak materiału między znacznikami</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_failed</source>
        <translation>Nie można zapisać %1</translation>
    </message>
</context>
<context>
    <name>CLS_DlgClipExport</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgClipExport.cpp" line="+42"/>
        <source>lab_export_clip</source>
        <translation>Eksportuj klip</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>lab_export_mp4</source>
        <translation>Wideo MP4</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_sdv</source>
        <translation>Zapieczętowany SDV (hasło)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_format</source>
        <translation>Format</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_browse</source>
        <translation>Przeglądaj...</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+72"/>
        <source>lab_export_target</source>
        <translation>Zapisz jako</translation>
    </message>
    <message>
        <location line="-68"/>
        <source>lab_password</source>
        <translation>Hasło</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_password_again</source>
        <translation>Powtórz hasło</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_source_password</source>
        <translation>Hasło tego wideo</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>btn_cancel</source>
        <translation>Anuluj</translation>
    </message>
    <message>
        <location line="+65"/>
        <location line="+2"/>
        <source>msg_export_no_target</source>
        <translation>Wybierz plik docelowy</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+3"/>
        <source>msg_password_empty</source>
        <translation>Wprowadź hasło</translation>
    </message>
    <message>
        <location line="-2"/>
        <source>msg_password_mismatch</source>
        <translation>Hasła nie są zgodne</translation>
    </message>
</context>
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgQuillPlayer.ui" line="+17"/>
        <source>QuillPlayer</source>
        <translation>Odtwarzacz Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <location filename="../../BriskInclude/CLS_ModuleBasic.cpp" line="+29"/>
        <source>ModuleName</source>
        <translation>Odtwarzacz lokalny</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ModuleExplain</source>
        <translation>Odtwarza pliki wideo zapisane na tym komputerze.</translation>
    </message>
</context>
<context>
    <name>CLS_VideoAreaTools</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_VideoAreaTools.cpp" line="+52"/>
        <source>lab_snapshot</source>
        <translation>Zrzut klatki</translation>
    </message>
    <message>
        <location line="+4"/>
        <location line="+89"/>
        <source>lab_snapshot_folder</source>
        <translation>Folder zrzutów...</translation>
    </message>
    <message>
        <location line="-86"/>
        <source>lab_zoom_reset</source>
        <translation>Resetuj powiększenie</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>lab_recorded_time</source>
        <translation>Pokaż czas nagrania</translation>
    </message>
    <message>
        <location line="+54"/>
        <location line="+12"/>
        <source>msg_snapshot_failed</source>
        <translation>Nie udało się zapisać zrzutu</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>msg_snapshot_saved</source>
        <translation>Zapisano zrzut:</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.ui" line="+20"/>
        <source>Form</source>
        <translation>Formularz</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.cpp" line="+40"/>
        <source>lab_history_playback</source>
        <translation>Historia odtwarzania</translation>
    </message>
    <message>
        <location line="+165"/>
        <source>lab_notice</source>
        <translation>Powiadomienie</translation>
    </message>
    <message>
        <location line="-9"/>
        <source>msg_videopath_notexist</source>
        <translation>Plik wideo już nie istnieje. Usunąć go z historii?</translation>
    </message>
    <message>
        <location line="-114"/>
        <source>msg_path_error</source>
        <translation>Plik wideo nie istnieje.</translation>
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
        <translation>Anuluj</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_yes</source>
        <translation>Tak</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_no</source>
        <translation>Nie</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_save</source>
        <translation>Zapisz</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_discard</source>
        <translation>Odrzuć</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_close</source>
        <translation>Zamknij</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_apply</source>
        <translation>Zastosuj</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_retry</source>
        <translation>Ponów</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_ignore</source>
        <translation>Ignoruj</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_abort</source>
        <translation>Przerwij</translation>
    </message>
    <message>
        <location line="+183"/>
        <source>btn_show_password</source>
        <translation>Pokaż hasło</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_hide_password</source>
        <translation>Ukryj hasło</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.ui" line="+31"/>
        <source>Form</source>
        <translation>Formularz</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerControlBar.ui" line="+20"/>
        <source>Form</source>
        <translation>Formularz</translation>
    </message>
    <message>
        <location line="+132"/>
        <source>btn_open_file</source>
        <translation>Otwórz plik</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>btn_frameback</source>
        <translation>Poprzednia klatka</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_slow_forward</source>
        <translation>Wolniej</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_play_pause</source>
        <translation>Odtwórz/Wstrzymaj</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_stop</source>
        <translation>Zatrzymaj</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_fast_forward</source>
        <translation>Szybciej</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_frame_progression</source>
        <translation>Następna klatka</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>btn_full_screen</source>
        <translation>Pełny ekran</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_sound_on_off</source>
        <translation>Włącz/wyłącz dźwięk</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>btn_history_table</source>
        <translation>Historia odtwarzania</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.ui" line="+20"/>
        <source>Form</source>
        <translation>Formularz</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.cpp" line="+15"/>
        <source>btn_continuation</source>
        <translation>Wznów odtwarzanie</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerMainBody.ui" line="+17"/>
        <source>Form</source>
        <translation>Formularz</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.ui" line="+14"/>
        <source>Form</source>
        <translation>Formularz</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.cpp" line="+51"/>
        <source>btn_minimize</source>
        <translation>Minimalizuj</translation>
    </message>
    <message>
        <location line="-3"/>
        <location line="+23"/>
        <source>btn_maximize</source>
        <translation>Maksymalizuj</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>lab_recover</source>
        <translation>Przywróć</translation>
    </message>
    <message>
        <location line="-21"/>
        <source>btn_close_down</source>
        <translation>Zamknij</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/MainWindow.cpp" line="+206"/>
        <source>lab_open_video</source>
        <translation>Otwórz wideo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_video_format</source>
        <translation>Pliki wideo </translation>
    </message>
    <message>
        <location line="+231"/>
        <source>lab_notice</source>
        <translation>Powiadomienie</translation>
    </message>
    <message>
        <location line="-177"/>
        <source>lab_error_getvideotime</source>
        <translation>Nie można odczytać długości wideo.</translation>
    </message>
    <message>
        <location line="-31"/>
        <source>msg_path_not_exist</source>
        <translation>Ścieżka wideo jest pusta.</translation>
    </message>
    <message>
        <location line="+24"/>
        <source>msg_failed_play_video</source>
        <translation>Nie udało się odtworzyć wideo.</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>msg_setting_time_error</source>
        <translation>Nieprawidłowy czas początkowy, odtwarzanie od początku.</translation>
    </message>
    <message>
        <location line="+250"/>
        <source>msg_function_notallow</source>
        <translation>Ta funkcja nie jest dostępna dla tego wideo.</translation>
    </message>
    <message>
        <location line="+91"/>
        <source>msg_videodecrpt_notice</source>
        <translation>Zaszyfrowane wideo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_decrptinput_password</source>
        <translation>Wprowadź hasło do tego wideo.</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>msg_decrpte_notice</source>
        <translation>Odszyfrowanie nie powiodło się</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_videodecript_failed</source>
        <translation>Nieprawidłowe hasło. Spróbować ponownie?</translation>
    </message>
</context>
</TS>
