<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <source>QuillPlayer</source>
        <translation>Lettore Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <source>ModuleName</source>
        <translation>Lettore locale</translation>
    </message>
    <message>
        <source>ModuleExplain</source>
        <translation>Riproduce i file video salvati su questo computer.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <source>Form</source>
        <translation>Modulo</translation>
    </message>
    <message>
        <source>lab_history_playback</source>
        <translation>Cronologia di riproduzione</translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Avviso</translation>
    </message>
    <message>
        <source>msg_videopath_notexist</source>
        <translation>Il file video non esiste più. Rimuoverlo dalla cronologia?</translation>
    </message>
    <message>
        <source>msg_path_error</source>
        <translation>Il file video non esiste.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <source>btn_ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>btn_cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>btn_yes</source>
        <translation>Sì</translation>
    </message>
    <message>
        <source>btn_no</source>
        <translation>No</translation>
    </message>
    <message>
        <source>btn_save</source>
        <translation>Salva</translation>
    </message>
    <message>
        <source>btn_discard</source>
        <translation>Non salvare</translation>
    </message>
    <message>
        <source>btn_close</source>
        <translation>Chiudi</translation>
    </message>
    <message>
        <source>btn_apply</source>
        <translation>Applica</translation>
    </message>
    <message>
        <source>btn_retry</source>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>btn_ignore</source>
        <translation>Ignora</translation>
    </message>
    <message>
        <source>btn_abort</source>
        <translation>Interrompi</translation>
    </message>
    <message>
        <source>btn_show_password</source>
        <translation>Mostra password</translation>
    </message>
    <message>
        <source>btn_hide_password</source>
        <translation>Nascondi password</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <source>Form</source>
        <translation>Modulo</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <source>Form</source>
        <translation>Modulo</translation>
    </message>
    <message>
        <source>btn_open_file</source>
        <translation>Apri file</translation>
    </message>
    <message>
        <source>btn_frameback</source>
        <translation>Fotogramma precedente</translation>
    </message>
    <message>
        <source>btn_slow_forward</source>
        <translation>Più lento</translation>
    </message>
    <message>
        <source>btn_play_pause</source>
        <translation>Riproduci/Pausa</translation>
    </message>
    <message>
        <source>lab_stop</source>
        <translation>Interrompi</translation>
    </message>
    <message>
        <source>btn_fast_forward</source>
        <translation>Più veloce</translation>
    </message>
    <message>
        <source>btn_frame_progression</source>
        <translation>Fotogramma successivo</translation>
    </message>
    <message>
        <source>btn_full_screen</source>
        <translation>Schermo intero</translation>
    </message>
    <message>
        <source>lab_sound_on_off</source>
        <translation>Attiva/disattiva audio</translation>
    </message>
    <message>
        <source>btn_history_table</source>
        <translation>Cronologia di riproduzione</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <source>Form</source>
        <translation>Modulo</translation>
    </message>
    <message>
        <source>btn_continuation</source>
        <translation>Riprendi la riproduzione</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <source>Form</source>
        <translation>Modulo</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <source>Form</source>
        <translation>Modulo</translation>
    </message>
    <message>
        <source>btn_minimize</source>
        <translation>Riduci a icona</translation>
    </message>
    <message>
        <source>btn_maximize</source>
        <translation>Ingrandisci</translation>
    </message>
    <message>
        <source>lab_recover</source>
        <translation>Ripristina</translation>
    </message>
    <message>
        <source>btn_close_down</source>
        <translation>Chiudi</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>lab_open_video</source>
        <translation>Apri video</translation>
    </message>
    <message>
        <source>lab_video_format</source>
        <translation>File video </translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Avviso</translation>
    </message>
    <message>
        <source>lab_error_getvideotime</source>
        <translation>Impossibile leggere la durata del video.</translation>
    </message>
    <message>
        <source>msg_path_not_exist</source>
        <translation>Il percorso del video è vuoto.</translation>
    </message>
    <message>
        <source>msg_failed_play_video</source>
        <translation>Impossibile riprodurre il video.</translation>
    </message>
    <message>
        <source>msg_setting_time_error</source>
        <translation>Ora di inizio non valida, riproduzione dall'inizio.</translation>
    </message>
    <message>
        <source>msg_function_notallow</source>
        <translation>Funzione non disponibile per questo video.</translation>
    </message>
    <message>
        <source>msg_videodecrpt_notice</source>
        <translation>Video crittografato</translation>
    </message>
    <message>
        <source>msg_decrptinput_password</source>
        <translation>Inserisci la password di questo video.</translation>
    </message>
    <message>
        <source>msg_decrpte_notice</source>
        <translation>Decrittografia non riuscita</translation>
    </message>
    <message>
        <source>msg_videodecript_failed</source>
        <translation>Password errata. Riprovare?</translation>
    </message>
</context>
</TS>
