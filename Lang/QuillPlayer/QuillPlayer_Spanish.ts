<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <source>QuillPlayer</source>
        <translation>Reproductor Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <source>ModuleName</source>
        <translation>Reproductor local</translation>
    </message>
    <message>
        <source>ModuleExplain</source>
        <translation>Reproduce archivos de vídeo guardados en este equipo.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>lab_history_playback</source>
        <translation>Historial de reproducción</translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Aviso</translation>
    </message>
    <message>
        <source>msg_videopath_notexist</source>
        <translation>El archivo de vídeo ya no existe. ¿Quitarlo del historial?</translation>
    </message>
    <message>
        <source>msg_path_error</source>
        <translation>El archivo de vídeo no existe.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <source>btn_ok</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>btn_cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>btn_yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>btn_no</source>
        <translation>No</translation>
    </message>
    <message>
        <source>btn_save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>btn_discard</source>
        <translation>Descartar</translation>
    </message>
    <message>
        <source>btn_close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>btn_apply</source>
        <translation>Aplicar</translation>
    </message>
    <message>
        <source>btn_retry</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>btn_ignore</source>
        <translation>Omitir</translation>
    </message>
    <message>
        <source>btn_abort</source>
        <translation>Anular</translation>
    </message>
    <message>
        <source>btn_show_password</source>
        <translation>Mostrar contraseña</translation>
    </message>
    <message>
        <source>btn_hide_password</source>
        <translation>Ocultar contraseña</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>btn_open_file</source>
        <translation>Abrir archivo</translation>
    </message>
    <message>
        <source>btn_frameback</source>
        <translation>Fotograma anterior</translation>
    </message>
    <message>
        <source>btn_slow_forward</source>
        <translation>Más lento</translation>
    </message>
    <message>
        <source>btn_play_pause</source>
        <translation>Reproducir/Pausa</translation>
    </message>
    <message>
        <source>lab_stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>btn_fast_forward</source>
        <translation>Más rápido</translation>
    </message>
    <message>
        <source>btn_frame_progression</source>
        <translation>Fotograma siguiente</translation>
    </message>
    <message>
        <source>btn_full_screen</source>
        <translation>Pantalla completa</translation>
    </message>
    <message>
        <source>lab_sound_on_off</source>
        <translation>Activar/desactivar sonido</translation>
    </message>
    <message>
        <source>btn_history_table</source>
        <translation>Historial de reproducción</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>btn_continuation</source>
        <translation>Continuar reproducción</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>btn_minimize</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>btn_maximize</source>
        <translation>Maximizar</translation>
    </message>
    <message>
        <source>lab_recover</source>
        <translation>Restaurar</translation>
    </message>
    <message>
        <source>btn_close_down</source>
        <translation>Cerrar</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>lab_open_video</source>
        <translation>Abrir vídeo</translation>
    </message>
    <message>
        <source>lab_video_format</source>
        <translation>Archivos de vídeo </translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Aviso</translation>
    </message>
    <message>
        <source>lab_error_getvideotime</source>
        <translation>No se pudo leer la duración del vídeo.</translation>
    </message>
    <message>
        <source>msg_path_not_exist</source>
        <translation>La ruta del vídeo está vacía.</translation>
    </message>
    <message>
        <source>msg_failed_play_video</source>
        <translation>No se pudo reproducir el vídeo.</translation>
    </message>
    <message>
        <source>msg_setting_time_error</source>
        <translation>Hora de inicio no válida; se reproduce desde el principio.</translation>
    </message>
    <message>
        <source>msg_function_notallow</source>
        <translation>Esta función no está disponible para este vídeo.</translation>
    </message>
    <message>
        <source>msg_videodecrpt_notice</source>
        <translation>Vídeo cifrado</translation>
    </message>
    <message>
        <source>msg_decrptinput_password</source>
        <translation>Introduzca la contraseña de este vídeo.</translation>
    </message>
    <message>
        <source>msg_decrpte_notice</source>
        <translation>Error de descifrado</translation>
    </message>
    <message>
        <source>msg_videodecript_failed</source>
        <translation>Contraseña incorrecta. ¿Volver a intentarlo?</translation>
    </message>
</context>
</TS>
