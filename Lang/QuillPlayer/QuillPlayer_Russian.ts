<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>CLS_ClipCutController</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_ClipCutController.cpp" line="+163"/>
        <source>msg_export_need_marks</source>
        <translation>Сначала поставьте обе метки</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>lab_exporting</source>
        <translation>Экспорт фрагмента...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <location line="-141"/>
        <location line="+143"/>
        <source>lab_export_clip</source>
        <translation>Экспорт фрагмента</translation>
    </message>
    <message>
        <location line="-150"/>
        <source>lab_set_first_mark</source>
        <translation>Поставить первую метку</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_set_second_mark</source>
        <translation>Поставить вторую метку</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>lab_clear_marks</source>
        <translation>Убрать метки</translation>
    </message>
    <message>
        <location line="+164"/>
        <source>msg_export_done_silent</source>
        <translation>Фрагмент сохранён без звука: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_export_done</source>
        <translation>Фрагмент сохранён: %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_cancelled</source>
        <translation>Экспорт отменён</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>msg_export_wrong_password</source>
        <translation>Неверный пароль</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_empty</source>
        <translation>Между метками нечего экспортировать</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_failed</source>
        <translation>Не удалось записать %1</translation>
    </message>
</context>
<context>
    <name>CLS_DlgClipExport</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgClipExport.cpp" line="+42"/>
        <source>lab_export_clip</source>
        <translation>Экспорт фрагмента</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>lab_export_mp4</source>
        <translation>Видео MP4</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_sdv</source>
        <translation>Защищённый SDV (пароль)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_format</source>
        <translation>Формат</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_browse</source>
        <translation>Обзор...</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+72"/>
        <source>lab_export_target</source>
        <translation>Сохранить как</translation>
    </message>
    <message>
        <location line="-68"/>
        <source>lab_password</source>
        <translation>Пароль</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_password_again</source>
        <translation>Повторите пароль</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_source_password</source>
        <translation>Пароль этого видео</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_ok</source>
        <translation>ОК</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>btn_cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <location line="+65"/>
        <location line="+2"/>
        <source>msg_export_no_target</source>
        <translation>Выберите файл для сохранения</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+3"/>
        <source>msg_password_empty</source>
        <translation>Введите пароль</translation>
    </message>
    <message>
        <location line="-2"/>
        <source>msg_password_mismatch</source>
        <translation>Пароли не совпадают</translation>
    </message>
</context>
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgQuillPlayer.ui" line="+17"/>
        <source>QuillPlayer</source>
        <translation>Проигрыватель Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <location filename="../../BriskInclude/CLS_ModuleBasic.cpp" line="+29"/>
        <source>ModuleName</source>
        <translation>Локальный проигрыватель</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ModuleExplain</source>
        <translation>Воспроизводит видеофайлы, сохранённые на этом компьютере.</translation>
    </message>
</context>
<context>
    <name>CLS_VideoAreaTools</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_VideoAreaTools.cpp" line="+52"/>
        <source>lab_snapshot</source>
        <translation>Снимок кадра</translation>
    </message>
    <message>
        <location line="+4"/>
        <location line="+89"/>
        <source>lab_snapshot_folder</source>
        <translation>Папка снимков...</translation>
    </message>
    <message>
        <location line="-86"/>
        <source>lab_zoom_reset</source>
        <translation>Сбросить масштаб</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>lab_recorded_time</source>
        <translation>Показывать время записи</translation>
    </message>
    <message>
        <location line="+54"/>
        <location line="+12"/>
        <source>msg_snapshot_failed</source>
        <translation>Не удалось сохранить снимок</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>msg_snapshot_saved</source>
        <translation>Снимок сохранён:</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.ui" line="+20"/>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.cpp" line="+40"/>
        <source>lab_history_playback</source>
        <translation>История воспроизведения</translation>
    </message>
    <message>
        <location line="+165"/>
        <source>lab_notice</source>
        <translation>Уведомление</translation>
    </message>
    <message>
        <location line="-9"/>
        <source>msg_videopath_notexist</source>
        <translation>Видеофайл больше не существует. Удалить его из истории?</translation>
    </message>
    <message>
        <location line="-114"/>
        <source>msg_path_error</source>
        <translation>Видеофайл не существует.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <location filename="../../BusinessLib/WgtMsgBox/CLS_WgtMsgBox.cpp" line="+32"/>
        <source>btn_ok</source>
        <translation>ОК</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_yes</source>
        <translation>Да</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_no</source>
        <translation>Нет</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_discard</source>
        <translation>Не сохранять</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_apply</source>
        <translation>Применить</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_retry</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_ignore</source>
        <translation>Пропустить</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_abort</source>
        <translation>Прервать</translation>
    </message>
    <message>
        <location line="+183"/>
        <source>btn_show_password</source>
        <translation>Показать пароль</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_hide_password</source>
        <translation>Скрыть пароль</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.ui" line="+31"/>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerControlBar.ui" line="+20"/>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <location line="+132"/>
        <source>btn_open_file</source>
        <translation>Открыть файл</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>btn_frameback</source>
        <translation>Предыдущий кадр</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_slow_forward</source>
        <translation>Медленнее</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_play_pause</source>
        <translation>Воспроизведение/пауза</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_stop</source>
        <translation>Стоп</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_fast_forward</source>
        <translation>Быстрее</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_frame_progression</source>
        <translation>Следующий кадр</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>btn_full_screen</source>
        <translation>Во весь экран</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_sound_on_off</source>
        <translation>Включить/выключить звук</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>btn_history_table</source>
        <translation>История воспроизведения</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.ui" line="+20"/>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.cpp" line="+15"/>
        <source>btn_continuation</source>
        <translation>Продолжить воспроизведение</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerMainBody.ui" line="+17"/>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.ui" line="+14"/>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.cpp" line="+51"/>
        <source>btn_minimize</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <location line="-3"/>
        <location line="+23"/>
        <source>btn_maximize</source>
        <translation>Развернуть</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>lab_recover</source>
        <translation>Восстановить</translation>
    </message>
    <message>
        <location line="-21"/>
        <source>btn_close_down</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/MainWindow.cpp" line="+206"/>
        <source>lab_open_video</source>
        <translation>Открыть видео</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_video_format</source>
        <translation>Видеофайлы </translation>
    </message>
    <message>
        <location line="+231"/>
        <source>lab_notice</source>
        <translation>Уведомление</translation>
    </message>
    <message>
        <location line="-177"/>
        <source>lab_error_getvideotime</source>
        <translation>Не удалось определить длительность видео.</translation>
    </message>
    <message>
        <location line="-31"/>
        <source>msg_path_not_exist</source>
        <translation>Путь к видео не указан.</translation>
    </message>
    <message>
        <location line="+24"/>
        <source>msg_failed_play_video</source>
        <translation>Не удалось воспроизвести видео.</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>msg_setting_time_error</source>
        <translation>Неверное время начала, воспроизведение с начала.</translation>
    </message>
    <message>
        <location line="+250"/>
        <source>msg_function_notallow</source>
        <translation>Эта функция недоступна для этого видео.</translation>
    </message>
    <message>
        <location line="+91"/>
        <source>msg_videodecrpt_notice</source>
        <translation>Зашифрованное видео</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_decrptinput_password</source>
        <translation>Введите пароль для этого видео.</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>msg_decrpte_notice</source>
        <translation>Ошибка расшифровки</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_videodecript_failed</source>
        <translation>Неверный пароль. Повторить?</translation>
    </message>
</context>
</TS>
