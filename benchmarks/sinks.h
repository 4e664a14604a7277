// SPDX-License-Identifier: Apache-2.0
// Where a benchmark's standard output goes while it is measured.
#pragma once

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace ventrik {

class Sink {
 public:
  Sink() = default;
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;
  virtual ~Sink() = default;

  // Forgets what has come so far.
  virtual void Clear() {}

  // What has come since then.
  virtual std::string Bytes() { return {}; }

  // Whether a write waits for other threads.
  virtual bool MakesWait() const { return false; }

  int descriptor() const { return descriptor_; }

 protected:
  int descriptor_ = -1;
};

class NullSink : public Sink {
 public:
  NullSink() {
    descriptor_ = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (descriptor_ < 0) std::abort();
  }
  ~NullSink() override { close(descriptor_); }
};

// A file without a name.
class FileSink : public Sink {
 public:
  FileSink() {
    char path[] = "/tmp/ventrik-benchmark-XXXXXX";
    descriptor_ = mkstemp(path);
    if (descriptor_ < 0 || unlink(path) != 0) std::abort();
  }
  ~FileSink() override { close(descriptor_); }

  void Clear() override {
    if (ftruncate(descriptor_, 0) != 0 || lseek(descriptor_, 0, SEEK_SET) != 0) std::abort();
  }

  std::string Bytes() override {
    std::string bytes(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
    const ssize_t size = pread(descriptor_, bytes.data(), bytes.size(), 0);
    if (size != static_cast<ssize_t>(bytes.size())) std::abort();
    return bytes;
  }
};

// A terminal with a thread at its other end that reads all the time.
class TerminalSink : public Sink {
 public:
  TerminalSink() {
    if (openpty(&otherEnd_, &descriptor_, nullptr, nullptr, nullptr) != 0) std::abort();
    reader_ = std::thread([this] { Read(); });
  }
  ~TerminalSink() override {
    close(descriptor_);  // the last one: the reader's read fails
    reader_.join();
    close(otherEnd_);
  }

  bool MakesWait() const override { return true; }

  void Clear() override { TakeAll(); }

  std::string Bytes() override { return TakeAll(); }

 private:
  static constexpr char kEnd = '\x1A';  // printed by nobody

  void Read() {
    char part[65536];
    for (ssize_t size = 0; (size = read(otherEnd_, part, sizeof part)) > 0;) {
      const std::lock_guard<std::mutex> hold(lock_);
      bytes_.append(part, static_cast<std::size_t>(size));
    }
  }

  // All that has been written until now: the reader is waited for.
  std::string TakeAll() {
    if (write(descriptor_, &kEnd, 1) != 1) std::abort();
    for (;; usleep(100)) {
      const std::lock_guard<std::mutex> hold(lock_);
      if (bytes_.empty() || bytes_.back() != kEnd) continue;
      bytes_.pop_back();
      return std::exchange(bytes_, {});
    }
  }

  int otherEnd_ = -1;
  std::mutex lock_;
  std::string bytes_;
  std::thread reader_;
};

// Puts a sink in the place of standard output, for a scope. What was there before is back at the
// end, for the table.
class StandardOutput {
 public:
  explicit StandardOutput(const Sink& sink) : before_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
    std::fflush(stdout);
    if (before_ < 0 || dup2(sink.descriptor(), STDOUT_FILENO) < 0) std::abort();
  }
  ~StandardOutput() {
    dup2(before_, STDOUT_FILENO);
    close(before_);
  }
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  int before_;
};

// A stream of the C library's own on a sink, as its standard output would be.
class WideStream {
 public:
  explicit WideStream(const Sink& sink)
      : file_(fdopen(fcntl(sink.descriptor(), F_DUPFD_CLOEXEC, 0), "w")) {
    if (file_ == nullptr) std::abort();
  }
  ~WideStream() { std::fclose(file_); }
  WideStream(const WideStream&) = delete;
  WideStream& operator=(const WideStream&) = delete;

  std::FILE* file() const { return file_; }

 private:
  std::FILE* file_;
};

}  // namespace ventrik
