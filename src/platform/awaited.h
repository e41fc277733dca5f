// Calls into libraries that may never return, as they do before a server that accepts and never answers: each
// runs on a thread of its own, which is left behind where it doesn't come back in time.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace marlune {

// Runs a call and waits for its end for at most so long; true where it ended. What the call uses must be its
// own: it may go on for ever.
bool runBounded(std::function<void()> call, std::chrono::milliseconds patience);

// Runs a call on a thread that nobody joins, with all signals blocked.
void runDetached(std::function<void()> call);

// Something that is being made. One thread, apart from what goes on inside.
template <class Thing>
class Awaited {
  public:
    Awaited() = default;
    ~Awaited() { abandon(); }
    Awaited(const Awaited&) = delete;
    Awaited& operator=(const Awaited&) = delete;

    // discard: undoes make where nobody wants its result any more. Not while underWay().
    void start(std::function<Thing()> make, std::function<void(Thing)> discard) {
        discard_ = discard;
        shared_ = std::make_shared<Shared>();
        runDetached([shared = shared_, make = std::move(make), discard = std::move(discard)] {
            Thing made = make();
            std::unique_lock lock(shared->mutex);
            if (!shared->abandoned) {
                shared->made = made;
                shared->done.notify_all();
                return;
            }
            lock.unlock();
            discard(made);
        });
    }

    // Started, and the result not taken yet.
    bool underWay() const { return shared_ != nullptr; }

    // The result, once, if it comes within the time; it is the caller's from then on.
    std::optional<Thing> take(std::chrono::milliseconds patience) {
        if (!shared_) return {};
        std::unique_lock lock(shared_->mutex);
        if (!shared_->done.wait_for(lock, patience, [this] { return shared_->made.has_value(); })) return {};
        std::optional<Thing> made = shared_->made;
        lock.unlock();
        shared_ = nullptr;
        return made;
    }

    // Lets go of it: a result that comes later is discarded where it was made.
    void abandon() {
        if (!shared_) return;
        std::unique_lock lock(shared_->mutex);
        shared_->abandoned = true;
        const std::optional<Thing> made = shared_->made;
        lock.unlock();
        shared_ = nullptr;
        if (made) discard_(*made);
    }

  private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable done;
        std::optional<Thing> made;
        bool abandoned = false;
    };
    std::shared_ptr<Shared> shared_;
    std::function<void(Thing)> discard_;
};

} // namespace marlune
