// SPDX-License-Identifier: Apache-2.0
#include "console/utf8.h"

#include <cstdint>

namespace ventrik {
namespace {

char Byte(std::uint32_t value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

char Continuation(std::uint32_t code, int shift) {
  return Byte(0x80 | ((code >> shift) & 0x3F));
}

}  // namespace

std::string WideToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (const wchar_t character : text) {
    const auto code = static_cast<std::uint32_t>(character);
    if (code < 0x80) {
      bytes += Byte(code);
    } else if (code < 0x800) {
      bytes += Byte(0xC0 + (code >> 6));
      bytes += Continuation(code, 0);
    } else {
      bytes +=
          Byte(0xE0 + (code >> 12));  // Oddity: no mask, so code points above 65535 spill over.
      bytes += Continuation(code, 6);
      bytes += Continuation(code, 0);
    }
  }
  return bytes;
}

std::wstring Utf8ToWide(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  std::uint32_t code = 0;
  int pending = 0;  // continuation bytes still owed
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte == '\n') {
      text += L'\n';  // Oddity: leaves an unfinished sequence waiting.
    } else if (byte < 0x80) {
      if (pending != 0) text += L'?';
      text += static_cast<wchar_t>(byte);
      pending = 0;
    } else if (byte < 0xC0) {
      if (pending == 0) {
        text += L'?';
        continue;
      }
      code = (code << 6) + (byte & 0x3Fu);
      if (--pending == 0) text += static_cast<wchar_t>(code);
    } else if (byte < 0xE0) {
      code = byte & 0x1Fu;
      pending = 1;
    } else if (byte < 0xF0) {
      code = byte & 0x0Fu;
      pending = 2;
    } else if (byte < 0xF8) {
      code = byte & 0x07u;
      pending = 3;
    } else {
      text += L'?';
      pending = 0;
    }
  }
  if (pending != 0) text += L'?';
  return text;
}

std::string WideToTerminal(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (const wchar_t character : text) {
    const auto code = static_cast<std::uint32_t>(character);
    const bool surrogate = code >= 0xD800 && code < 0xE000;
    if (code < 0x80) {
      bytes += Byte(code);
    } else if (code > 0x10FFFF || surrogate) {
      bytes += '?';
    } else if (code < 0x800) {
      bytes += Byte(0xC0 | (code >> 6));
      bytes += Continuation(code, 0);
    } else if (code < 0x10000) {
      bytes += Byte(0xE0 | (code >> 12));
      bytes += Continuation(code, 6);
      bytes += Continuation(code, 0);
    } else {
      bytes += Byte(0xF0 | (code >> 18));
      bytes += Continuation(code, 12);
      bytes += Continuation(code, 6);
      bytes += Continuation(code, 0);
    }
  }
  return bytes;
}

}  // namespace ventrik
