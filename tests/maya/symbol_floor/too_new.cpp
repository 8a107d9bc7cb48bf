// Needs a libstdc++ symbol newer than any Maya's floor: gcc 12 and later version
// std::condition_variable::wait GLIBCXX_3.4.30.
#include <condition_variable>
#include <mutex>

void symbol_floor_wait(std::condition_variable& condition, std::unique_lock<std::mutex>& lock) {
    condition.wait(lock);
}
