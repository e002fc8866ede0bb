<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="tr" sourcelanguage="en">
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <source>QuillPlayer</source>
        <translation>Quill Oynatıcı</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <source>ModuleName</source>
        <translation>Yerel Oynatıcı</translation>
    </message>
    <message>
        <source>ModuleExplain</source>
        <translation>Bu bilgisayarda kayıtlı video dosyalarını oynatır.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>lab_history_playback</source>
        <translation>Oynatma Geçmişi</translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Bildirim</translation>
    </message>
    <message>
        <source>msg_videopath_notexist</source>
        <translation>Video dosyası artık yok. Oynatma geçmişinden kaldırılsın mı?</translation>
    </message>
    <message>
        <source>msg_path_error</source>
        <translation>Video dosyası bulunamadı.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <source>btn_ok</source>
        <translation>Tamam</translation>
    </message>
    <message>
        <source>btn_cancel</source>
        <translation>İptal</translation>
    </message>
    <message>
        <source>btn_yes</source>
        <translation>Evet</translation>
    </message>
    <message>
        <source>btn_no</source>
        <translation>Hayır</translation>
    </message>
    <message>
        <source>btn_save</source>
        <translation>Kaydet</translation>
    </message>
    <message>
        <source>btn_discard</source>
        <translation>Kaydetme</translation>
    </message>
    <message>
        <source>btn_close</source>
        <translation>Kapat</translation>
    </message>
    <message>
        <source>btn_apply</source>
        <translation>Uygula</translation>
    </message>
    <message>
        <source>btn_retry</source>
        <translation>Yeniden dene</translation>
    </message>
    <message>
        <source>btn_ignore</source>
        <translation>Yok say</translation>
    </message>
    <message>
        <source>btn_abort</source>
        <translation>Vazgeç</translation>
    </message>
    <message>
        <source>btn_show_password</source>
        <translation>Parolayı göster</translation>
    </message>
    <message>
        <source>btn_hide_password</source>
        <translation>Parolayı gizle</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>btn_open_file</source>
        <translation>Dosya aç</translation>
    </message>
    <message>
        <source>btn_frameback</source>
        <translation>Önceki kare</translation>
    </message>
    <message>
        <source>btn_slow_forward</source>
        <translation>Yavaşlat</translation>
    </message>
    <message>
        <source>btn_play_pause</source>
        <translation>Oynat/Duraklat</translation>
    </message>
    <message>
        <source>lab_stop</source>
        <translation>Durdur</translation>
    </message>
    <message>
        <source>btn_fast_forward</source>
        <translation>Hızlandır</translation>
    </message>
    <message>
        <source>btn_frame_progression</source>
        <translation>Sonraki kare</translation>
    </message>
    <message>
        <source>btn_full_screen</source>
        <translation>Tam ekran</translation>
    </message>
    <message>
        <source>lab_sound_on_off</source>
        <translation>Sesi aç/kapat</translation>
    </message>
    <message>
        <source>btn_history_table</source>
        <translation>Oynatma geçmişi</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>btn_continuation</source>
        <translation>Oynatmaya devam et</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>btn_minimize</source>
        <translation>Simge durumuna küçült</translation>
    </message>
    <message>
        <source>btn_maximize</source>
        <translation>Ekranı kapla</translation>
    </message>
    <message>
        <source>lab_recover</source>
        <translation>Önceki boyut</translation>
    </message>
    <message>
        <source>btn_close_down</source>
        <translation>Kapat</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>lab_open_video</source>
        <translation>Video Aç</translation>
    </message>
    <message>
        <source>lab_video_format</source>
        <translation>Video dosyaları </translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Bildirim</translation>
    </message>
    <message>
        <source>lab_error_getvideotime</source>
        <translation>Video süresi okunamadı.</translation>
    </message>
    <message>
        <source>msg_path_not_exist</source>
        <translation>Video yolu boş.</translation>
    </message>
    <message>
        <source>msg_failed_play_video</source>
        <translation>Video oynatılamadı.</translation>
    </message>
    <message>
        <source>msg_setting_time_error</source>
        <translation>Başlangıç zamanı geçersiz, baştan oynatılıyor.</translation>
    </message>
    <message>
        <source>msg_function_notallow</source>
        <translation>Bu işlev bu video için kullanılamaz.</translation>
    </message>
    <message>
        <source>msg_videodecrpt_notice</source>
        <translation>Şifreli Video</translation>
    </message>
    <message>
        <source>msg_decrptinput_password</source>
        <translation>Bu videonun parolasını girin.</translation>
    </message>
    <message>
        <source>msg_decrpte_notice</source>
        <translation>Şifre Çözme Başarısız</translation>
    </message>
    <message>
        <source>msg_videodecript_failed</source>
        <translation>Parola yanlış. Yeniden denensin mi?</translation>
    </message>
</context>
</TS>
