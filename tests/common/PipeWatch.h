#pragma once

#include <QString>
#include <atomic>
#include <thread>

// Keeps a reader from blocking on a named pipe for ever: while it lives, a
// thread of its own opens and closes the pipe's writing end whenever a reader
// has the pipe open or waits in open(), so that reader gets end of file at once.
// opened() tells whether any reader came.
class PipeWatch {
  public:
    explicit PipeWatch(const QString& pipe);
    ~PipeWatch();
    PipeWatch(const PipeWatch&) = delete;
    PipeWatch& operator=(const PipeWatch&) = delete;

    bool opened() const { return opened_.load(); }

  private:
    std::atomic_bool stop_{false};
    std::atomic_bool opened_{false};
    std::thread thread_;
};
