// SPDX-License-Identifier: Apache-2.0
#include "shell/history.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <utility>

#include "console/utf8.h"

namespace ventrik {
namespace {

constexpr const char* kHistoryFile = "qhistory.txt";
constexpr std::size_t kSavedEntries = 1000;

struct HistoryImage {
  std::string bytes;
  bool endless = false;
};

// What SaveHistory writes. The image before it is kept as well, because a handler may have begun to
// write it when the history changed. Neither is ever destroyed: a signal can come at the very end.
HistoryImage* volatile currentImage = nullptr;

struct Images {
  std::unique_ptr<HistoryImage> inUse;
  std::unique_ptr<HistoryImage> before;
};

Images& TheImages() {
  static Images& images = *new Images;
  return images;
}

// What a typed entry leaves in the file: a C string without line ends, which would come back as
// entries of their own, empty ones among them.
std::wstring AsOneLine(const std::wstring& entry) {
  std::wstring line;
  for (const wchar_t character : entry) {
    if (character == L'\0') break;
    if (character != L'\n' && character != L'\r') line += character;
  }
  return line;
}

void PrepareImage(const ClientApp& app) {
  auto image = std::make_unique<HistoryImage>();
  image->bytes = HistoryFileText(app.history, image->endless);
  currentImage = image.get();
  Images& images = TheImages();
  images.before = std::exchange(images.inUse, std::move(image));
}

void WriteImage(const HistoryImage& image) {
  const int file = open(kHistoryFile, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file < 0) return;
  const char* from = image.bytes.data();
  std::size_t left = image.bytes.size();
  while (left > 0) {
    const ssize_t written = write(file, from, left);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;
    from += written;
    left -= static_cast<std::size_t>(written);
  }
  while (image.endless) pause();
  close(file);
}

}  // namespace

std::string HistoryFileText(const std::vector<std::wstring>& history, bool& endless) {
  std::string bytes;
  endless = false;
  const std::size_t first = history.size() > kSavedEntries ? history.size() - kSavedEntries : 0;
  for (std::size_t i = first; i < history.size(); ++i) {
    endless = history[i].empty();
    if (endless) break;
    const std::wstring line = AsOneLine(history[i]);
    if (!line.empty()) bytes += WideToTerminal(line) + '\n';
  }
  return bytes;
}

void LoadHistory(ClientApp& app) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(kHistoryFile, "rb"),
                                                             std::fclose);
  std::wstring entry;
  while (file) {
    const std::wint_t character = std::fgetwc(file.get());
    if (character == WEOF) break;
    if (character == L'\n' || character == L'\r') {
      app.history.push_back(std::exchange(entry, {}));
    } else {
      entry += static_cast<wchar_t>(character);
    }
  }
  PrepareImage(app);
}

void AppendToHistory(ClientApp& app, const std::wstring& line) {
  app.history.push_back(line);
  PrepareImage(app);
}

void SaveHistory() {
  if (currentImage != nullptr) WriteImage(*currentImage);
}

}  // namespace ventrik
