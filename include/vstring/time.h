/* Times as text, always in English whatever the locale. Usable from C and C++. */
#ifndef VSTRING_TIME_H
#define VSTRING_TIME_H

#include <stddef.h>
#include <time.h>

#include "vstring/export.h"

/* Writes `when` into the buffer of `size` bytes as `format` says: every conversion of C99's
 * strftime in its form for the C locale, and %s, the seconds since 1970 as mktime counts them; of a
 * time that the clock shows twice, tm_gmtoff tells which one is meant. The modifiers E and O are
 * skipped; an unknown conversion and a final % stand as they are. Returns the number of bytes
 * without the NUL behind them; 0, with the buffer's contents unspecified, when they do not fit or
 * when memory runs out. */
VSTRING_API size_t my_strftime(char* buffer, size_t size, const char* format,
                               const struct tm* when);

/* Reads the start of a text by a format of the same conversions. A blank in the format stands for
 * any run of blanks, also none; names may be long or short, in letters of any case; of two-digit
 * years 69 to 99 are 19xx. %p counts for an hour that %I names. %U %V %W %g %G %u %w %z %Z and
 * names of days are read and left out of account. What the format does not name counts as
 * 1970-01-01 00:00:00. Fills all members of `when`, tm_isdst with -1 unless %s tells the time.
 * Returns where the reading ended; null, with `when` untouched, when the text does not match or
 * names no date. */
VSTRING_API char* my_strptime(const char* text, const char* format, struct tm* when);

#endif
