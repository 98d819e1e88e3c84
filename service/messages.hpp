// Numbered messages: their templates, filled in and printed. Every printed word of the library passes here.
// The texts stand in message_table.hpp.
#pragma once

namespace nxl {

/// The template of message `id`, printf conversions included, without its line end. Ids run from 0 to 1072; id 0, an id
/// outside that range and a reserved row give the empty string.
const char* nxl_msg_text(int id);

/// Message `id` filled in with the `nargs` values that follow, or the bare template when `nargs` is 0 or less.
/// A filled-in text is cut after 512 characters. It lives in the calling thread's own buffer until that thread's next
/// call.
const char* nxl_msg_format(int id, int nargs, ...);

/// Prints message `id`, filled in with the `nargs` values that follow, and a line end on standard output, and flushes
/// all streams; id 0 prints the line end alone and does not flush. `mode` is 0 or 1 and changes nothing. Lines of
/// concurrent callers stay whole. The filled-in text is a format once more: a "%%" that came in through a value prints
/// as "%". A text of more than 513 characters ends the process with status 8, after a report.
void nxl_msg_print(int mode, int id, int nargs, ...);

} // namespace nxl
