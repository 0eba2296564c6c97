#include "Fenwhirl/Platform/BackgroundTask.h"

#include "Fenwhirl/Platform/AlternateSignalStack.h"
#include "Fenwhirl/Platform/ThreadName.h"

#include <thread>
#include <utility>

void runInBackground(std::function<void()> task) {
    std::thread([task = std::move(task)] {
        const AlternateSignalStack stack;
        nameCurrentThread("fenwhirl.task");
        task();
    }).detach();
}
