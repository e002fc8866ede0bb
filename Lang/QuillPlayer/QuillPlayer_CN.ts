<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CLS_ClipCutController</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_ClipCutController.cpp" line="+163"/>
        <source>msg_export_need_marks</source>
        <translation>请先设置两个标记</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>lab_exporting</source>
        <translation>正在导出片段...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <location line="-141"/>
        <location line="+143"/>
        <source>lab_export_clip</source>
        <translation>导出片段</translation>
    </message>
    <message>
        <location line="-150"/>
        <source>lab_set_first_mark</source>
        <translation>设置起始标记</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_set_second_mark</source>
        <translation>设置结束标记</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>lab_clear_marks</source>
        <translation>清除标记</translation>
    </message>
    <message>
        <location line="+164"/>
        <source>msg_export_done_silent</source>
        <translation>片段已保存（无声音）：%1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_export_done</source>
        <translation>片段已保存：%1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_cancelled</source>
        <translation>导出已取消</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>msg_export_wrong_password</source>
        <translation>密码错误</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_empty</source>
        <translation>标记之间没有可导出的内容</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_failed</source>
        <translation>无法写入 %1</translation>
    </message>
</context>
<context>
    <name>CLS_DlgClipExport</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgClipExport.cpp" line="+42"/>
        <source>lab_export_clip</source>
        <translation>导出片段</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>lab_export_mp4</source>
        <translation>MP4 视频</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_sdv</source>
        <translation>加密 SDV（密码）</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_format</source>
        <translation>格式</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_browse</source>
        <translation>浏览...</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+72"/>
        <source>lab_export_target</source>
        <translation>另存为</translation>
    </message>
    <message>
        <location line="-68"/>
        <source>lab_password</source>
        <translation>密码</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_password_again</source>
        <translation>再次输入密码</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_source_password</source>
        <translation>此视频的密码</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_ok</source>
        <translation>确定</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>btn_cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <location line="+65"/>
        <location line="+2"/>
        <source>msg_export_no_target</source>
        <translation>请选择保存的文件</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+3"/>
        <source>msg_password_empty</source>
        <translation>请输入密码</translation>
    </message>
    <message>
        <location line="-2"/>
        <source>msg_password_mismatch</source>
        <translation>两次输入的密码不一致</translation>
    </message>
</context>
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgQuillPlayer.ui" line="+17"/>
        <source>QuillPlayer</source>
        <translation>Quill 播放器</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <location filename="../../BriskInclude/CLS_ModuleBasic.cpp" line="+29"/>
        <source>ModuleName</source>
        <translation>本地播放器</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ModuleExplain</source>
        <translation>播放本机上保存的视频文件。</translation>
    </message>
</context>
<context>
    <name>CLS_VideoAreaTools</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_VideoAreaTools.cpp" line="+52"/>
        <source>lab_snapshot</source>
        <translation>截图</translation>
    </message>
    <message>
        <location line="+4"/>
        <location line="+89"/>
        <source>lab_snapshot_folder</source>
        <translation>截图文件夹...</translation>
    </message>
    <message>
        <location line="-86"/>
        <source>lab_zoom_reset</source>
        <translation>重置缩放</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>lab_recorded_time</source>
        <translation>显示录像时间</translation>
    </message>
    <message>
        <location line="+54"/>
        <location line="+12"/>
        <source>msg_snapshot_failed</source>
        <translation>截图保存失败</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>msg_snapshot_saved</source>
        <translation>截图已保存：</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.ui" line="+20"/>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.cpp" line="+40"/>
        <source>lab_history_playback</source>
        <translation>播放历史</translation>
    </message>
    <message>
        <location line="+165"/>
        <source>lab_notice</source>
        <translation>提示</translation>
    </message>
    <message>
        <location line="-9"/>
        <source>msg_videopath_notexist</source>
        <translation>该视频文件已不存在，是否从播放历史中删除？</translation>
    </message>
    <message>
        <location line="-114"/>
        <source>msg_path_error</source>
        <translation>视频文件不存在。</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <location filename="../../BusinessLib/WgtMsgBox/CLS_WgtMsgBox.cpp" line="+32"/>
        <source>btn_ok</source>
        <translation>确定</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_yes</source>
        <translation>是</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_no</source>
        <translation>否</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_save</source>
        <translation>保存</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_discard</source>
        <translation>放弃</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_ignore</source>
        <translation>忽略</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_abort</source>
        <translation>中止</translation>
    </message>
    <message>
        <location line="+183"/>
        <source>btn_show_password</source>
        <translation>显示密码</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_hide_password</source>
        <translation>隐藏密码</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.ui" line="+31"/>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerControlBar.ui" line="+20"/>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <location line="+132"/>
        <source>btn_open_file</source>
        <translation>打开文件</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>btn_frameback</source>
        <translation>上一帧</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_slow_forward</source>
        <translation>减速</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_play_pause</source>
        <translation>播放/暂停</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_fast_forward</source>
        <translation>加速</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_frame_progression</source>
        <translation>下一帧</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>btn_full_screen</source>
        <translation>全屏</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_sound_on_off</source>
        <translation>打开/关闭声音</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>btn_history_table</source>
        <translation>播放历史</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.ui" line="+20"/>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.cpp" line="+15"/>
        <source>btn_continuation</source>
        <translation>继续播放</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerMainBody.ui" line="+17"/>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.ui" line="+14"/>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.cpp" line="+51"/>
        <source>btn_minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <location line="-3"/>
        <location line="+23"/>
        <source>btn_maximize</source>
        <translation>最大化</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>lab_recover</source>
        <translation>还原</translation>
    </message>
    <message>
        <location line="-21"/>
        <source>btn_close_down</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/MainWindow.cpp" line="+206"/>
        <source>lab_open_video</source>
        <translation>打开视频</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_video_format</source>
        <translation>视频文件 </translation>
    </message>
    <message>
        <location line="+231"/>
        <source>lab_notice</source>
        <translation>提示</translation>
    </message>
    <message>
        <location line="-177"/>
        <source>lab_error_getvideotime</source>
        <translation>无法获取视频时长。</translation>
    </message>
    <message>
        <location line="-31"/>
        <source>msg_path_not_exist</source>
        <translation>视频路径为空。</translation>
    </message>
    <message>
        <location line="+24"/>
        <source>msg_failed_play_video</source>
        <translation>视频播放失败。</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>msg_setting_time_error</source>
        <translation>起始时间无效，将从头播放。</translation>
    </message>
    <message>
        <location line="+250"/>
        <source>msg_function_notallow</source>
        <translation>该视频不支持此功能。</translation>
    </message>
    <message>
        <location line="+91"/>
        <source>msg_videodecrpt_notice</source>
        <translation>加密视频</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_decrptinput_password</source>
        <translation>请输入该视频的密码。</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>msg_decrpte_notice</source>
        <translation>解密失败</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_videodecript_failed</source>
        <translation>密码错误，是否重试？</translation>
    </message>
</context>
</TS>
