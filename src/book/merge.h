// Joining two book files into a third in one sequential pass over both.
#pragma once

// Copies every record of both inputs into output in key order; under a key present in both, the
// first book's records come first. True on success.
bool merge(const char* first, const char* second, const char* output);
