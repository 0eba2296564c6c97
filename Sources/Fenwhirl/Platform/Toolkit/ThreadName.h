// Gives a thread the name under which debuggers and process listings show it.

#pragma once

#include <string>

// Names the calling thread. A name that is too long for the system is cut off; a failure is ignored.
void nameCurrentThread(const std::string& name);
