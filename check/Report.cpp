#include "check/Report.h"

#include <algorithm>
#include <cstdio>

namespace check {

namespace {

std::string oneDecimal(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string jsonText(std::string_view text) {
  std::string made = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') made += '\\';
    // The reports of the processes hold no control characters; paths might.
    if (static_cast<unsigned char>(letter) < ' ') {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(letter));
      made += code;
    } else {
      made += letter;
    }
  }
  return made + '"';
}

std::string jsonList(const std::vector<std::string>& texts) {
  std::string made = "[";
  for (const std::string& text : texts) made += (made.size() == 1 ? "" : ", ") + jsonText(text);
  return made + "]";
}

std::string utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {reinterpret_cast<const char*>(text.data()), text.size()};
}

std::string_view subjectOf(const Promise* promise) {
  for (const Subject& subject : subjects()) {
    for (const Promise& each : subject.promises) {
      if (&each == promise) return subject.title;
    }
  }
  return "";
}

void writeDetails(std::ostream& out, const Result& result) {
  const auto lines = [&out](const char* before, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) out << "        " << before << text << '\n';
  };
  if (result.verdict == Verdict::kFail || result.verdict == Verdict::kWarn) {
    out << "        promised: " << result.promise->sentence << '\n';
    lines("seen: ", result.findings);
    lines("seen besides: ", result.warnings);
    lines("expected: ", result.expected);
    lines("", result.notes);
    out << "        again: " << result.repeat << '\n';
  }
  if (result.verdict == Verdict::kSkip) out << "        " << result.reason << '\n';
}

}  // namespace

int32_t countOf(const std::vector<Result>& results, Verdict verdict) {
  return static_cast<int32_t>(
      std::count_if(results.begin(), results.end(), [verdict](const Result& each) { return each.verdict == verdict; }));
}

void writeText(std::ostream& out, const std::vector<Result>& results, double seconds) {
  std::string_view subject;
  for (const Result& result : results) {
    if (const std::string_view its = subjectOf(result.promise); its != subject) {
      subject = its;
      out << subject << '\n';
    }
    const std::string_view word = result.verdict == Verdict::kFail ? "FAIL" : verdictName(result.verdict);
    out << "  " << word << "  " << result.promise->name << '\n';
    writeDetails(out, result);
  }
  out << results.size() << " promises: " << countOf(results, Verdict::kPass) << " kept, "
      << countOf(results, Verdict::kFail) << " broken, " << countOf(results, Verdict::kWarn) << " with a warning, "
      << countOf(results, Verdict::kSkip) << " skipped; " << oneDecimal(seconds) << " s\n";
}

void writeJson(std::ostream& out, const RunSettings& settings, const std::vector<Result>& results, double seconds) {
  out << "{\n  \"module\": " << jsonText(utf8(settings.module)) << ",\n  \"seed\": " << settings.seed
      << ",\n  \"seconds\": " << oneDecimal(seconds);
  for (const Verdict verdict : {Verdict::kPass, Verdict::kFail, Verdict::kWarn, Verdict::kSkip}) {
    out << ",\n  " << jsonText(verdictName(verdict)) << ": " << countOf(results, verdict);
  }
  out << ",\n  \"promises\": [";
  const char* separator = "\n";
  for (const Result& result : results) {
    out << separator << "    {\n      \"name\": " << jsonText(result.promise->name)
        << ",\n      \"subject\": " << jsonText(subjectOf(result.promise))
        << ",\n      \"sentence\": " << jsonText(result.promise->sentence)
        << ",\n      \"result\": " << jsonText(verdictName(result.verdict))
        << ",\n      \"seen\": " << jsonList(result.findings)
        << ",\n      \"seenBesides\": " << jsonList(result.warnings)
        << ",\n      \"expected\": " << jsonList(result.expected) << ",\n      \"tried\": " << jsonList(result.notes)
        << ",\n      \"skippedFor\": " << jsonText(result.reason) << ",\n      \"again\": " << jsonText(result.repeat)
        << ",\n      \"seconds\": " << oneDecimal(result.seconds) << "\n    }";
    separator = ",\n";
  }
  out << "\n  ]\n}\n";
}

void writeList(std::ostream& out) {
  for (const Subject& subject : subjects()) {
    out << subject.title << '\n';
    for (const Promise& promise : subject.promises) out << "  " << promise.name << ": " << promise.sentence << '\n';
  }
}

void writeMarkdown(std::ostream& out) {
  size_t count = 0;
  for (const Subject& subject : subjects()) count += subject.promises.size();
  out << "# What an effect module promises\n\n"
         "<!-- Made by `vindrel check --list --markdown`; a test holds that it is up to date. -->\n\n"
         "`vindrel check MODULE` tries "
      << count
      << " promises that every effect module of this interface gives its host and its user, ours or anybody's. On "
         "Windows, and\n"
         "for `.aex` files under Wine, it is `vindrel-host check MODULE`. Each promise is tried in a process of its "
         "own with a "
         "time limit:\n"
         "a module that crashes, hangs or ends its process breaks that one promise, and the others are tried all the "
         "same.\n\n"
         "```sh\n"
         "vindrel check Some.so                               # all of them, several at once\n"
         "vindrel check Some.so --only ids-are-unique         # one; may be repeated\n"
         "vindrel check Some.so --seed 7                      # other random frames and values; without it the seed is "
         "1\n"
         "vindrel check Some.so --json                        # for programs\n"
         "wine vindrel-host.exe check Some.aex                # the same on a Windows module\n"
         "vindrel check --list                                # names and sentences\n"
         "```\n\n"
         "Of each promise the result is `pass`, `fail`, `warn` (something was seen that may be meant so, or that the "
         "module's own "
         "list\n"
         "expects) or `skip` (the module has nothing to try it with, and the reason is told). What failed or warns "
         "comes with the "
         "promise,\n"
         "with what was seen and with the words that try it again. The exit code is 0 when nothing failed, 1 when "
         "something did, "
         "2 for\n"
         "bad input. `--jobs N` is how many processes run at once (without it, one for each processor), `--time-factor "
         "F` stretches "
         "all\n"
         "time limits, for slow machines.\n\n"
         "## What a module is known to do\n\n"
         "A file beside the module, of its name with the ending `.expected`, lists what its author knows and means, "
         "one line each:\n"
         "`PROMISE | PATTERN | REASON`. A finding is expected when a line of its promise matches all of it, `*` "
         "standing for any "
         "text; the\n"
         "promise then warns and tells the reason. Anything else that is seen still fails. `--expected FILE` takes "
         "another list, "
         "`--expected none`\n"
         "none.\n";
  for (const Subject& subject : subjects()) {
    std::string title(subject.title);
    title.front() = static_cast<char>(title.front() - 'a' + 'A');
    out << "\n## " << title << "\n\n| promise | what is promised |\n|---|---|\n";
    for (const Promise& promise : subject.promises) {
      out << "| `" << promise.name << "` | " << promise.sentence;
      if (promise.weight == Weight::kShould) out << " (A warning.)";
      out << " |\n";
    }
  }
}

}  // namespace check
