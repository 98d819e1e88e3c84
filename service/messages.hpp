// Numbered messages: the table of templates, the printer, and LSAME. Every printed word of the library passes here.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The template of message `id`, printf conversions included, without its line end. Ids run from 0 to 1072; id 0, an id
/// outside that range and a reserved row give the empty string.
const char* nxl_msg_text(int id);

/// Message `id` filled in with the `nargs` values that follow, or the bare template when `nargs` is 0 or less.
/// The result lives in the calling thread's own buffer of 512 bytes until that thread's next call.
const char* nxl_msg_format(int id, int nargs, ...);

/// Prints message `id` and a line end on standard output and flushes all streams; id 0 prints the line end alone.
/// `mode` is 0 or 1 and changes nothing. Lines of concurrent callers stay whole.
void nxl_msg_print(int mode, int id, int nargs, ...);

/// True when the first bytes of `a` and `b` are the same letter, whatever its case, or the same byte. The lengths are
/// the hidden ones of a Fortran call and are not looked at.
bool LSAME(const char* a, const char* b, int a_length, int b_length);

} // namespace nxl
