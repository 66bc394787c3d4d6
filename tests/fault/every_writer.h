// The fixture of the tests that bring a fault into every writer.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "fault/working_node.h"
#include "fault/writer_table.h"
#include "support/slow_build.h"
#include "support/traced_call.h"

// What the files of a writer hold; nothing: the file is not there.
using FileState = std::vector<std::optional<std::string>>;

class EveryWriter : public NodeTest, public testing::WithParamInterface<Writer> {
  protected:
    EveryWriter() { GrantRequests(); }

    static FileState StateOf(const std::vector<const char *> &files) {
        FileState state;
        for (const char *file : files)
            state.push_back(Exists(file) ? std::optional(ReadText(file)) : std::nullopt);
        return state;
    }

    // An undisturbed call, with all that its files hold on the way.
    struct Course {
        int result = 0;
        int system_calls = 0;
        std::vector<FileState> states;

        bool Has(const FileState &state) const {
            return std::find(states.begin(), states.end(), state) != states.end();
        }
    };

    // A sanitizer's build takes every seventh point of a long course.
    static int StrideOf(const Course &course) {
        constexpr int kShortCourse = 30;
        return kIsSlowBuild && course.system_calls > kShortCourse ? 7 : 1;
    }

    static void Prepare(const Writer &writer) {
        MakeWorkingNode();
        if (writer.prepare) writer.prepare();
    }

    Course Undisturbed(const Writer &writer) {
        Prepare(writer);
        Course course;
        course.states.push_back(StateOf(writer.files));
        const TracedCall run = RunTraced(writer.call, {}, [&] {
            const FileState state = StateOf(writer.files);
            if (state != course.states.back()) course.states.push_back(state);
        });
        course.result = run.result;
        course.system_calls = run.system_calls;
        EXPECT_GE(run.result, 0) << Join(log_.Take());
        return course;
    }

    // Whether the next call works, or the one after it: a left-over temporary file
    // of a snapshot makes one call fail.
    static bool WorksAgain(const Writer &writer, const Course &course) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (writer.call() < 0) continue;
            return writer.Is(kOnce) || StateOf(writer.files) == course.states.back();
        }
        return false;
    }

    static std::set<std::string> LinesOf(const std::string &text) {
        std::set<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) lines.insert(line);
        return lines;
    }

    // Whether a text has only whole lines that it may have, and all that stay the same
    // in the course: a sequence of writes may lack some that have failed.
    static bool HasWholeLines(const Course &course, size_t file, const std::string &text) {
        std::set<std::string> allowed;
        std::set<std::string> kept = LinesOf(course.states.front()[file].value_or(""));
        for (const FileState &state : course.states) {
            const std::set<std::string> lines = LinesOf(state[file].value_or(""));
            allowed.insert(lines.begin(), lines.end());
            std::erase_if(kept, [&](const std::string &line) { return !lines.contains(line); });
        }
        const std::set<std::string> lines = LinesOf(text);
        return std::includes(allowed.begin(), allowed.end(), lines.begin(), lines.end()) &&
               std::includes(lines.begin(), lines.end(), kept.begin(), kept.end());
    }

    static bool IsWhole(const Course &course, const FileState &state) {
        for (size_t file = 0; file < state.size(); ++file) {
            const auto holds = [&](const FileState &other) { return other[file] == state[file]; };
            if (std::any_of(course.states.begin(), course.states.end(), holds)) continue;
            const auto &last = course.states.back()[file];
            const bool is_record = last && last->find('\0') != std::string::npos;
            if (!state[file]) return false;
            if (is_record ? state[file]->size() != last->size()
                          : !HasWholeLines(course, file, *state[file]))
                return false;
        }
        return true;
    }

    static std::string Join(const Lines &lines) {
        std::string text;
        for (const std::string &line : lines) text += line + "\n";
        return text;
    }
};

// The name of a case.
inline std::string WriterName(const testing::TestParamInfo<Writer> &row) {
    return row.param.name;
}
