// The engine's name, version and author, as the banner and the protocols show them.
#pragma once

constexpr const char* ENGINE_NAME = "Kelvra";
constexpr const char* ENGINE_VERSION = "0.3a";
constexpr const char* ENGINE_AUTHOR = "the Kelvra developers";
