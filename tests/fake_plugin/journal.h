/* SPDX-License-Identifier: MIT
 *
 * What is done to the plug-in, written down: one line a call, appended to the
 * file that the steering file's "log" names. */
#ifndef FAKE_JOURNAL_H
#define FAKE_JOURNAL_H

/* Each line begins with the plug-in's directory and file name. */
void open_journal(const char* plugin_path, const char* log_path);

void begin_note(const char* call);
/* Adds a blank, the name and the text, with blanks and the like as %XX. */
void note_word(const char* name, const char* text);
void note_number(const char* name, unsigned long value);
void end_note(void);

void note_call(const char* call);

#endif
