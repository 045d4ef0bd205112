#pragma once

namespace velmora::server {

// Whether an error of a call says that the file's disk or share fails, and nothing about the file.
bool isStorageFault(int error);
// Whether an open file cannot be read now, or only after waiting: then what a reader made of it says nothing about the
// file. Looks at a few places of the file; returns when the storage answers.
bool isStorageFailing(int file);

} // namespace velmora::server
