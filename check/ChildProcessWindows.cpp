#ifndef NOMINMAX
#define NOMINMAX
#endif
// The order counts: the second header needs the first.
#include <windows.h>
//
#include <psapi.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "check/ChildProcess.h"

namespace check {

namespace {

// One word in the form that the runtime of the started program takes apart again: in quotes, with the backslashes
// doubled that stand before a quote.
void addQuoted(std::wstring& line, const std::wstring& word) {
  if (!line.empty()) line += L' ';
  line += L'"';
  size_t backslashes = 0;
  for (const wchar_t letter : word) {
    if (letter == L'\\') {
      ++backslashes;
      continue;
    }
    line.append(letter == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
    backslashes = 0;
    line += letter;
  }
  line.append(2 * backslashes, L'\\');
  line += L'"';
}

std::wstring wide(const std::string& utf8) {
  return std::filesystem::path(reinterpret_cast<const char8_t*>(utf8.c_str())).wstring();
}

LONG WINAPI endWithTheCode(EXCEPTION_POINTERS* pointers) {
  TerminateProcess(GetCurrentProcess(), pointers->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

std::string nameOf(DWORD code) {
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
      return " (access violation)";
    case EXCEPTION_STACK_OVERFLOW:
      return " (stack overflow)";
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      return " (division by zero)";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return " (illegal instruction)";
    case 0xC0000374:
      return " (heap corruption)";
    case 0xC0000409:
      return " (stack overrun)";
    default:
      return "";
  }
}

}  // namespace

struct ChildProcess::State {
  HANDLE process = nullptr;
  bool running = false;
  bool endedFromOutside = false;
  ChildEnd end;
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& words,
                           const std::filesystem::path& outputFile)
    : state_(std::make_unique<State>()) {
  std::wstring line;
  addQuoted(line, program.wstring());
  for (const std::string& word : words) addQuoted(line, wide(word));
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  auto* const output = CreateFileW(outputFile.wstring().c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   &inherited, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = output;
  start.hStdError = output;
  PROCESS_INFORMATION made{};
  const BOOL started = CreateProcessW(program.wstring().c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                      nullptr, &start, &made);
  if (output != INVALID_HANDLE_VALUE) CloseHandle(output);
  if (!started) throw std::runtime_error("can't start a process: system error " + std::to_string(GetLastError()));
  CloseHandle(made.hThread);
  state_->process = made.hProcess;
  state_->running = true;
}

ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

ChildProcess::~ChildProcess() {
  if (!state_) return;
  if (state_->running) {
    end();
    WaitForSingleObject(state_->process, INFINITE);
  }
  CloseHandle(state_->process);
}

std::optional<ChildEnd> ChildProcess::ended() {
  if (!state_->running) return state_->end;
  if (WaitForSingleObject(state_->process, 0) != WAIT_OBJECT_0) return std::nullopt;
  state_->running = false;
  DWORD code = 0;
  GetExitCodeProcess(state_->process, &code);
  ChildEnd& end = state_->end;
  // Exceptions are numbers with the two upper bits set; abort() of the C library is 3.
  end.byItself = !state_->endedFromOutside && code < 0xC0000000U;
  end.code = static_cast<int32_t>(code);
  std::array<char, 16> hexadecimal{};
  std::snprintf(hexadecimal.data(), hexadecimal.size(), "0x%08lX", code);
  end.text = end.byItself ? "exit code " + std::to_string(code) : "exception " + (hexadecimal.data() + nameOf(code));
  PROCESS_MEMORY_COUNTERS counters{};
  if (GetProcessMemoryInfo(state_->process, &counters, sizeof counters)) end.peakMemory = counters.PeakWorkingSetSize;
  return end;
}

void ChildProcess::end() {
  if (!state_->running) return;
  state_->endedFromOutside = true;
  TerminateProcess(state_->process, 1);
}

std::filesystem::path ownProgram() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  if (path.empty()) throw std::runtime_error("can't tell which program this is");
  return path;
}

void crashQuietly() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(endWithTheCode);
}

uint64_t residentMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.WorkingSetSize : 0;
}

}  // namespace check
