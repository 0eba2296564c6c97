#include "Fenwhirl/Platform/Toolkit/BackgroundTask.h"

#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <thread>
#include <utility>

namespace Fenwhirl {

void runInBackground(std::function<void()> task) {
    std::thread([task = std::move(task)] {
        const AlternateSignalStack stack;
        nameCurrentThread("fenwhirl.task");
        task();
    }).detach();
}

} // namespace Fenwhirl
