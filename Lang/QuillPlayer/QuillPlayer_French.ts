<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <source>QuillPlayer</source>
        <translation>Lecteur Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <source>ModuleName</source>
        <translation>Lecteur local</translation>
    </message>
    <message>
        <source>ModuleExplain</source>
        <translation>Lit les fichiers vidéo enregistrés sur cet ordinateur.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>lab_history_playback</source>
        <translation>Historique de lecture</translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>msg_videopath_notexist</source>
        <translation>Ce fichier vidéo n'existe plus. Le retirer de l'historique ?</translation>
    </message>
    <message>
        <source>msg_path_error</source>
        <translation>Le fichier vidéo n'existe pas.</translation>
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
        <translation>Annuler</translation>
    </message>
    <message>
        <source>btn_yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>btn_no</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>btn_save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>btn_discard</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>btn_close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>btn_apply</source>
        <translation>Appliquer</translation>
    </message>
    <message>
        <source>btn_retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>btn_ignore</source>
        <translation>Ignorer</translation>
    </message>
    <message>
        <source>btn_abort</source>
        <translation>Abandonner</translation>
    </message>
    <message>
        <source>btn_show_password</source>
        <translation>Afficher le mot de passe</translation>
    </message>
    <message>
        <source>btn_hide_password</source>
        <translation>Masquer le mot de passe</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>btn_open_file</source>
        <translation>Ouvrir un fichier</translation>
    </message>
    <message>
        <source>btn_frameback</source>
        <translation>Image précédente</translation>
    </message>
    <message>
        <source>btn_slow_forward</source>
        <translation>Ralentir</translation>
    </message>
    <message>
        <source>btn_play_pause</source>
        <translation>Lecture/Pause</translation>
    </message>
    <message>
        <source>lab_stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>btn_fast_forward</source>
        <translation>Accélérer</translation>
    </message>
    <message>
        <source>btn_frame_progression</source>
        <translation>Image suivante</translation>
    </message>
    <message>
        <source>btn_full_screen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>lab_sound_on_off</source>
        <translation>Activer/couper le son</translation>
    </message>
    <message>
        <source>btn_history_table</source>
        <translation>Historique de lecture</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>btn_continuation</source>
        <translation>Reprendre la lecture</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>btn_minimize</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>btn_maximize</source>
        <translation>Agrandir</translation>
    </message>
    <message>
        <source>lab_recover</source>
        <translation>Restaurer</translation>
    </message>
    <message>
        <source>btn_close_down</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>lab_open_video</source>
        <translation>Ouvrir une vidéo</translation>
    </message>
    <message>
        <source>lab_video_format</source>
        <translation>Fichiers vidéo </translation>
    </message>
    <message>
        <source>lab_notice</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>lab_error_getvideotime</source>
        <translation>Impossible de lire la durée de la vidéo.</translation>
    </message>
    <message>
        <source>msg_path_not_exist</source>
        <translation>Le chemin de la vidéo est vide.</translation>
    </message>
    <message>
        <source>msg_failed_play_video</source>
        <translation>Échec de la lecture de la vidéo.</translation>
    </message>
    <message>
        <source>msg_setting_time_error</source>
        <translation>Heure de début non valide, lecture depuis le début.</translation>
    </message>
    <message>
        <source>msg_function_notallow</source>
        <translation>Cette fonction n'est pas disponible pour cette vidéo.</translation>
    </message>
    <message>
        <source>msg_videodecrpt_notice</source>
        <translation>Vidéo chiffrée</translation>
    </message>
    <message>
        <source>msg_decrptinput_password</source>
        <translation>Saisissez le mot de passe de cette vidéo.</translation>
    </message>
    <message>
        <source>msg_decrpte_notice</source>
        <translation>Échec du déchiffrement</translation>
    </message>
    <message>
        <source>msg_videodecript_failed</source>
        <translation>Mot de passe incorrect. Réessayer ?</translation>
    </message>
</context>
</TS>
