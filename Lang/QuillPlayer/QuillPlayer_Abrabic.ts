<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <source>QuillPlayer</source>
        <translation>مشغل Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <source>ModuleName</source>
        <translation>المشغل المحلي</translation>
    </message>
    <message>
        <source>ModuleExplain</source>
        <translation>يشغّل ملفات الفيديو المحفوظة على هذا الكمبيوتر.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <source>Form</source>
        <translation>نموذج</translation>
    </message>
    <message>
        <source>lab_history_playback</source>
        <translation>سجل التشغيل</translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>تنبيه</translation>
    </message>
    <message>
        <source>msg_videopath_notexist</source>
        <translation>ملف الفيديو لم يعد موجودًا. هل تريد إزالته من سجل التشغيل؟</translation>
    </message>
    <message>
        <source>msg_path_error</source>
        <translation>ملف الفيديو غير موجود.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <source>btn_ok</source>
        <translation>موافق</translation>
    </message>
    <message>
        <source>btn_cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>btn_yes</source>
        <translation>نعم</translation>
    </message>
    <message>
        <source>btn_no</source>
        <translation>لا</translation>
    </message>
    <message>
        <source>btn_save</source>
        <translation>حفظ</translation>
    </message>
    <message>
        <source>btn_discard</source>
        <translation>عدم الحفظ</translation>
    </message>
    <message>
        <source>btn_close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>btn_apply</source>
        <translation>تطبيق</translation>
    </message>
    <message>
        <source>btn_retry</source>
        <translation>إعادة المحاولة</translation>
    </message>
    <message>
        <source>btn_ignore</source>
        <translation>تجاهل</translation>
    </message>
    <message>
        <source>btn_abort</source>
        <translation>إحباط</translation>
    </message>
    <message>
        <source>btn_show_password</source>
        <translation>إظهار كلمة المرور</translation>
    </message>
    <message>
        <source>btn_hide_password</source>
        <translation>إخفاء كلمة المرور</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <source>Form</source>
        <translation>نموذج</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <source>Form</source>
        <translation>نموذج</translation>
    </message>
    <message>
        <source>btn_open_file</source>
        <translation>فتح ملف</translation>
    </message>
    <message>
        <source>btn_frameback</source>
        <translation>الإطار السابق</translation>
    </message>
    <message>
        <source>btn_slow_forward</source>
        <translation>أبطأ</translation>
    </message>
    <message>
        <source>btn_play_pause</source>
        <translation>تشغيل/إيقاف مؤقت</translation>
    </message>
    <message>
        <source>lab_stop</source>
        <translation>إيقاف</translation>
    </message>
    <message>
        <source>btn_fast_forward</source>
        <translation>أسرع</translation>
    </message>
    <message>
        <source>btn_frame_progression</source>
        <translation>الإطار التالي</translation>
    </message>
    <message>
        <source>btn_full_screen</source>
        <translation>ملء الشاشة</translation>
    </message>
    <message>
        <source>lab_sound_on_off</source>
        <translation>تشغيل/كتم الصوت</translation>
    </message>
    <message>
        <source>btn_history_table</source>
        <translation>سجل التشغيل</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <source>Form</source>
        <translation>نموذج</translation>
    </message>
    <message>
        <source>btn_continuation</source>
        <translation>متابعة التشغيل</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <source>Form</source>
        <translation>نموذج</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <source>Form</source>
        <translation>نموذج</translation>
    </message>
    <message>
        <source>btn_minimize</source>
        <translation>تصغير</translation>
    </message>
    <message>
        <source>btn_maximize</source>
        <translation>تكبير</translation>
    </message>
    <message>
        <source>lab_recover</source>
        <translation>استعادة</translation>
    </message>
    <message>
        <source>btn_close_down</source>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>lab_open_video</source>
        <translation>فتح فيديو</translation>
    </message>
    <message>
        <source>lab_video_format</source>
        <translation>ملفات الفيديو </translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>تنبيه</translation>
    </message>
    <message>
        <source>lab_error_getvideotime</source>
        <translation>تعذّرت قراءة مدة الفيديو.</translation>
    </message>
    <message>
        <source>msg_path_not_exist</source>
        <translation>مسار الفيديو فارغ.</translation>
    </message>
    <message>
        <source>msg_failed_play_video</source>
        <translation>فشل تشغيل الفيديو.</translation>
    </message>
    <message>
        <source>msg_setting_time_error</source>
        <translation>وقت البدء غير صالح، سيتم التشغيل من البداية.</translation>
    </message>
    <message>
        <source>msg_function_notallow</source>
        <translation>هذه الوظيفة غير متاحة لهذا الفيديو.</translation>
    </message>
    <message>
        <source>msg_videodecrpt_notice</source>
        <translation>فيديو مشفّر</translation>
    </message>
    <message>
        <source>msg_decrptinput_password</source>
        <translation>أدخل كلمة المرور لهذا الفيديو.</translation>
    </message>
    <message>
        <source>msg_decrpte_notice</source>
        <translation>فشل فك التشفير</translation>
    </message>
    <message>
        <source>msg_videodecript_failed</source>
        <translation>كلمة المرور غير صحيحة. هل تريد إعادة المحاولة؟</translation>
    </message>
</context>
</TS>
