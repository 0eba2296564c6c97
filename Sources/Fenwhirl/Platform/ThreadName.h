// The name under which debuggers and process listings show a thread.

#pragma once

#include <string>

// Names the calling thread; what the system has no room for is cut off, and a refusal is ignored.
void nameCurrentThread(const std::string& name);
