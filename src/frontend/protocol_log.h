// The protocol log both protocol handlers keep: a numbered file per handshake that takes every line
// written through Log, the commands read and the answers sent with their time stamps.
#pragma once

#include "board/move.h"
#include "frontend/util/string.h"

// Opens the first numbered file not yet taken in directory (kelvra-0000.log, kelvra-0001.log, ...) and
// makes it the log stream; an empty directory keeps no log file. A file opened by an earlier handshake
// stays open: the search thread may still be writing to it.
void openProtocolLog(const String& directory);

// Appends what goes to stderr to the version's error log in the working directory.
void openErrorLog();

// Logs an answer sent to the GUI with its time stamp.
void logAnswer(const char* answer, const char* text = "");

// Logs the engine's move and, when there is one, its ponder move, each with its text in the log.
void logBestmove(Move best, const char* bestText, Move ponder, const char* ponderText);
