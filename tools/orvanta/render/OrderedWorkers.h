// Work that several threads do, taken in the order in which it was given.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace OrvantaNS::render {

/// Threads that turn an `In` into an `Out`, and one thread that takes the results in the order of their inputs. No more
/// than a fixed number of pieces is under way, so memory does not grow with the length of the work.
template <typename In, typename Out> class OrderedWorkers {
public:
    using Work = std::function<Out(In)>;
    using Take = std::function<void(Out)>;

    /// Each of the threads gets a `Work` of its own from `makeWork`, so that it may keep what it needs again.
    OrderedWorkers(std::size_t threads, const std::function<Work()>& makeWork, Take take)
        : capacity_(2 * threads + 1), take_(std::move(take)) {
        for (std::size_t i = 0; i < threads; ++i) {
            works_.push_back(makeWork());
        }
        for (const Work& each : works_) {
            threads_.emplace_back([this, &each] { guarded([this, &each] { work(each); }); });
        }
        threads_.emplace_back([this] { guarded([this] { takeAll(); }); });
    }

    /// Abandons what is still waiting.
    ~OrderedWorkers() {
        {
            const std::lock_guard lock(mutex_);
            stopped_ = true;
        }
        join();
    }
    OrderedWorkers(const OrderedWorkers&) = delete;
    OrderedWorkers& operator=(const OrderedWorkers&) = delete;

    /// Waits until there is room. Throws what a thread threw.
    void push(In in) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return stopped_ || pieces_.size() < capacity_; });
        rethrow();
        pieces_.emplace_back().in = std::move(in);
        changed_.notify_all();
    }

    /// Waits until all is done and taken. Throws what a thread threw.
    void finish() {
        {
            const std::lock_guard lock(mutex_);
            complete_ = true;
        }
        join();
        rethrow();
    }

private:
    /// Stays at its address while it is in the deque, whose ends alone change.
    struct Piece {
        std::optional<In> in;
        std::optional<Out> out;
        bool begun = false;
    };

    template <typename Body> void guarded(const Body& body) {
        try {
            body();
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = failure_ ? failure_ : std::current_exception();
            stopped_ = true;
            changed_.notify_all();
        }
    }

    void work(const Work& transform) {
        std::unique_lock lock(mutex_);
        for (;;) {
            Piece* piece = nullptr;
            changed_.wait(lock, [this, &piece] {
                piece = nextPiece();
                return stopped_ || piece != nullptr || complete_;
            });
            if (stopped_ || piece == nullptr) {
                return;
            }
            piece->begun = true;
            In in = std::move(*piece->in);
            lock.unlock();
            Out out = transform(std::move(in));
            lock.lock();
            piece->out = std::move(out);
            changed_.notify_all();
        }
    }

    Piece* nextPiece() {
        for (Piece& piece : pieces_) {
            if (!piece.begun) {
                return &piece;
            }
        }
        return nullptr;
    }

    void takeAll() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] {
                return stopped_ || (!pieces_.empty() && pieces_.front().out) || (complete_ && pieces_.empty());
            });
            if (stopped_ || pieces_.empty()) {
                return;
            }
            Out out = std::move(*pieces_.front().out);
            pieces_.pop_front();
            changed_.notify_all();
            lock.unlock();
            take_(std::move(out));
            lock.lock();
        }
    }

    void join() {
        changed_.notify_all();
        for (std::thread& thread : threads_) {
            if (thread.joinable()) {
                thread.join();
            }
        }
    }

    void rethrow() {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

    std::size_t capacity_;
    Take take_;
    std::mutex mutex_;                // Guards all below but the threads.
    std::condition_variable changed_; // Anything below.
    std::deque<Piece> pieces_;
    bool complete_ = false; // Nothing will be pushed any more.
    bool stopped_ = false;  // Nothing that waits is worth doing any more.
    std::exception_ptr failure_;
    std::vector<Work> works_; // One for each working thread, untouched while they run.
    std::vector<std::thread> threads_;
};

} // namespace OrvantaNS::render
