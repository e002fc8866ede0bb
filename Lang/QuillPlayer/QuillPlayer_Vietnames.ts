<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="vi" sourcelanguage="en">
<context>
    <name>CLS_ClipCutController</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_ClipCutController.cpp" line="+163"/>
        <source>msg_export_need_marks</source>
        <translation>Hãy đặt cả hai dấu trước</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>lab_exporting</source>
        <translation>Đang xuất đoạn phim...</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_cancel</source>
        <translation>Hủy</translation>
    </message>
    <message>
        <location line="-141"/>
        <location line="+143"/>
        <source>lab_export_clip</source>
        <translation>Xuất đoạn phim</translation>
    </message>
    <message>
        <location line="-150"/>
        <source>lab_set_first_mark</source>
        <translation>Đặt dấu đầu</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_set_second_mark</source>
        <translation>Đặt dấu thứ hai</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>lab_clear_marks</source>
        <translation>Xóa dấu</translation>
    </message>
    <message>
        <location line="+164"/>
        <source>msg_export_done_silent</source>
        <translation>Đã lưu đoạn phim không có âm thanh: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_export_done</source>
        <translation>Đã lưu đoạn phim: %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_cancelled</source>
        <translation>Đã hủy xuất</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>msg_export_wrong_password</source>
        <translation>Sai mật khẩu</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_empty</source>
        <translation>Không có gì để xuất giữa hai dấu</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>msg_export_failed</source>
        <translation>Không thể ghi %1</translation>
    </message>
</context>
<context>
    <name>CLS_DlgClipExport</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgClipExport.cpp" line="+42"/>
        <source>lab_export_clip</source>
        <translation>Xuất đoạn phim</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>lab_export_mp4</source>
        <translation>Video MP4</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_sdv</source>
        <translation>SDV niêm phong (mật khẩu)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_export_format</source>
        <translation>Định dạng</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_browse</source>
        <translation>Duyệt...</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+72"/>
        <source>lab_export_target</source>
        <translation>Lưu thành</translation>
    </message>
    <message>
        <location line="-68"/>
        <source>lab_password</source>
        <translation>Mật khẩu</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_password_again</source>
        <translation>Nhập lại mật khẩu</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>lab_source_password</source>
        <translation>Mật khẩu của video này</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>btn_ok</source>
        <translation>Đồng ý</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>btn_cancel</source>
        <translation>Hủy</translation>
    </message>
    <message>
        <location line="+65"/>
        <location line="+2"/>
        <source>msg_export_no_target</source>
        <translation>Chọn tệp để lưu</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+3"/>
        <source>msg_password_empty</source>
        <translation>Nhập mật khẩu</translation>
    </message>
    <message>
        <location line="-2"/>
        <source>msg_password_mismatch</source>
        <translation>Mật khẩu không khớp</translation>
    </message>
</context>
<context>
    <name>CLS_DlgQuillPlayer</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_DlgQuillPlayer.ui" line="+17"/>
        <source>QuillPlayer</source>
        <translation>Trình phát Quill</translation>
    </message>
</context>
<context>
    <name>CLS_ModuleBasic</name>
    <message>
        <location filename="../../BriskInclude/CLS_ModuleBasic.cpp" line="+29"/>
        <source>ModuleName</source>
        <translation>Trình phát cục bộ</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>ModuleExplain</source>
        <translation>Phát các tệp video lưu trên máy tính này.</translation>
    </message>
</context>
<context>
    <name>CLS_VideoAreaTools</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_VideoAreaTools.cpp" line="+52"/>
        <source>lab_snapshot</source>
        <translation>Chụp ảnh</translation>
    </message>
    <message>
        <location line="+4"/>
        <location line="+89"/>
        <source>lab_snapshot_folder</source>
        <translation>Thư mục ảnh chụp...</translation>
    </message>
    <message>
        <location line="-86"/>
        <source>lab_zoom_reset</source>
        <translation>Đặt lại thu phóng</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>lab_recorded_time</source>
        <translation>Hiện thời gian ghi hình</translation>
    </message>
    <message>
        <location line="+54"/>
        <location line="+12"/>
        <source>msg_snapshot_failed</source>
        <translation>Không lưu được ảnh chụp</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>msg_snapshot_saved</source>
        <translation>Đã lưu ảnh chụp:</translation>
    </message>
</context>
<context>
    <name>CLS_WgtHistroyList</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.ui" line="+20"/>
        <source>Form</source>
        <translation>Biểu mẫu</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtHistroyList.cpp" line="+40"/>
        <source>lab_history_playback</source>
        <translation>Lịch sử phát</translation>
    </message>
    <message>
        <location line="+165"/>
        <source>lab_notice</source>
        <translation>Thông báo</translation>
    </message>
    <message>
        <location line="-9"/>
        <source>msg_videopath_notexist</source>
        <translation>Tệp video không còn tồn tại. Xóa khỏi lịch sử phát?</translation>
    </message>
    <message>
        <location line="-114"/>
        <source>msg_path_error</source>
        <translation>Tệp video không tồn tại.</translation>
    </message>
</context>
<context>
    <name>CLS_WgtMsgBox</name>
    <message>
        <location filename="../../BusinessLib/WgtMsgBox/CLS_WgtMsgBox.cpp" line="+32"/>
        <source>btn_ok</source>
        <translation>Đồng ý</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_cancel</source>
        <translation>Hủy</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_yes</source>
        <translation>Có</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_no</source>
        <translation>Không</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_save</source>
        <translation>Lưu</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_discard</source>
        <translation>Không lưu</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_close</source>
        <translation>Đóng</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_apply</source>
        <translation>Áp dụng</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_retry</source>
        <translation>Thử lại</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_ignore</source>
        <translation>Bỏ qua</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>btn_abort</source>
        <translation>Hủy bỏ</translation>
    </message>
    <message>
        <location line="+183"/>
        <source>btn_show_password</source>
        <translation>Hiện mật khẩu</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>btn_hide_password</source>
        <translation>Ẩn mật khẩu</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayer7ToolboxBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.ui" line="+31"/>
        <source>Form</source>
        <translation>Biểu mẫu</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerControlBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerControlBar.ui" line="+20"/>
        <source>Form</source>
        <translation>Biểu mẫu</translation>
    </message>
    <message>
        <location line="+132"/>
        <source>btn_open_file</source>
        <translation>Mở tệp</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>btn_frameback</source>
        <translation>Khung hình trước</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_slow_forward</source>
        <translation>Chậm hơn</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_play_pause</source>
        <translation>Phát/Tạm dừng</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_stop</source>
        <translation>Dừng</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_fast_forward</source>
        <translation>Nhanh hơn</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>btn_frame_progression</source>
        <translation>Khung hình tiếp theo</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>btn_full_screen</source>
        <translation>Toàn màn hình</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>lab_sound_on_off</source>
        <translation>Bật/tắt âm thanh</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>btn_history_table</source>
        <translation>Lịch sử phát</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerListItem</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.ui" line="+20"/>
        <source>Form</source>
        <translation>Biểu mẫu</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerListItem.cpp" line="+15"/>
        <source>btn_continuation</source>
        <translation>Phát tiếp</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerMainBody</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerMainBody.ui" line="+17"/>
        <source>Form</source>
        <translation>Biểu mẫu</translation>
    </message>
</context>
<context>
    <name>CLS_WgtPlayerTopBar</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.ui" line="+14"/>
        <source>Form</source>
        <translation>Biểu mẫu</translation>
    </message>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/CLS_WgtPlayerTopBar.cpp" line="+51"/>
        <source>btn_minimize</source>
        <translation>Thu nhỏ</translation>
    </message>
    <message>
        <location line="-3"/>
        <location line="+23"/>
        <source>btn_maximize</source>
        <translation>Phóng to</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>lab_recover</source>
        <translation>Khôi phục</translation>
    </message>
    <message>
        <location line="-21"/>
        <source>btn_close_down</source>
        <translation>Đóng</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../../BusinessLib/ModuleKoPlayer/MainWindow.cpp" line="+206"/>
        <source>lab_open_video</source>
        <translation>Mở video</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>lab_video_format</source>
        <translation>Tệp video </translation>
    </message>
    <message>
        <location line="+231"/>
        <source>lab_notice</source>
        <translation>Thông báo</translation>
    </message>
    <message>
        <location line="-177"/>
        <source>lab_error_getvideotime</source>
        <translation>Không đọc được thời lượng video.</translation>
    </message>
    <message>
        <location line="-31"/>
        <source>msg_path_not_exist</source>
        <translation>Đường dẫn video trống.</translation>
    </message>
    <message>
        <location line="+24"/>
        <source>msg_failed_play_video</source>
        <translation>Không phát được video.</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>msg_setting_time_error</source>
        <translation>Thời điểm bắt đầu không hợp lệ, phát lại từ đầu.</translation>
    </message>
    <message>
        <location line="+250"/>
        <source>msg_function_notallow</source>
        <translation>Chức năng này không dùng được cho video này.</translation>
    </message>
    <message>
        <location line="+91"/>
        <source>msg_videodecrpt_notice</source>
        <translation>Video được mã hóa</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_decrptinput_password</source>
        <translation>Nhập mật khẩu của video này.</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>msg_decrpte_notice</source>
        <translation>Giải mã thất bại</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>msg_videodecript_failed</source>
        <translation>Sai mật khẩu. Thử lại?</translation>
    </message>
</context>
</TS>
