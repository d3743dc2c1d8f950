#pragma once

// The walk over traces: reads them one after the other, lets their hits be recorded in the model, and tells of tests
// and parts when they begin and end. It writes nothing; who wants to answers its events.
//
//   NT line met            testLinesEnd   what the lines of the test before have left is complete (fields still unread)
//     its fields are read  testEnds       the test before has ended: its hits stand in the model
//                          periodEnds     the service number of the line is another one than that of the tests before
//                          testBegins     the new test
//   FT and DC lines        partMet        hits of this part follow, or are skipped
//   end of all traces      testLinesEnd, testEnds, testsEnd, periodEnds
//
// The walk never resets the counts of a test: they add up until somebody calls resetTestCounts, which a program that
// wants the hits of each test does in its answer to testEnds.

#include <cstdint>
#include <string>

#include "report/hit_recorder.h"
#include "report/options.h"
#include "report/tio.h"

namespace veldacov {

// A test, as its lines tell it.
struct TestRun {
    const NameEntry* test =
        nullptr; // by which it is known; null for a number without digits, and before the first test
    KnownBy knownBy = KnownBy::Default;
    std::int32_t number = -1;        // -1: none was given
    std::int32_t serviceNumber = -1; // as `number`
    const NameEntry* date = nullptr; // of a DT line of its own; null when it has none
    bool countOriented = false;      // its last CO or NT line says that hits carry counts
    bool selected = false;           // its hits are recorded
};

// A part of a trace: the hits of one source file in one test.
struct MetPart {
    PartKey key;
    const FileDescription* description = nullptr; // null when nothing describes it: its hits are skipped
    bool otherChecksum =
        false; // an earlier description has its key and another checksum: a stale build, when nothing
               // describes the part
    bool selected = false; // its hits are recorded
};

// Answers to what a walk meets. Every answer may do nothing.
class TraceEvents {
public:
    virtual ~TraceEvents() = default;
    // Whether the hits of a test that the options select are of interest: at its test line, and for the default test
    // where a file is read outside of tests.
    virtual bool takesTest(const NameEntry* /*test*/) { return true; }
    // The lines of the current test have ended: the next test line is met, or the traces are over.
    virtual void testLinesEnd() {}
    // A selected test ends. Also called, with `selected` false, where hits have been recorded outside of any selected
    // test: before the first test line, or at the start of a file behind a test that is not selected.
    virtual void testEnds(const TestRun&) {}
    // A period of tests of one service number ends.
    virtual void periodEnds(std::int32_t /*serviceNumber*/) {}
    virtual void testBegins(const TestRun&) {}
    virtual void partMet(const MetPart&) {}
    // All tests of all traces have ended.
    virtual void testsEnd() {}
};

// A walk and how far it has come. Options, recorder and events are given at its start; all else is written by the walk
// only and may be read in the answers to its events.
struct TraceWalk {
    const CoverageOptions* options = nullptr; // which files and tests are selected; borrowed
    TraceEvents* events = nullptr;            // borrowed
    HitRecorder recorder;
    TraceCursor trace;     // file, line, test, date, part and count mode of the traces
    TestRun test;          // the current test
    bool testOpen = false; // it is selected and its hits are recorded
    std::int32_t currentServiceNumber =
        -1;                     // of the period; a test line without such a number does not end it
    bool someCounted = false;   // a CO line was met while recording
    bool someUncounted = false; // a reported part was met without one
};

TraceWalk startWalk(const CoverageOptions& options, TraceEvents& events, const HitRecorder& recorder);

// Reads one trace file. Malformed traces are fatal errors; a file that is no trace is a user error, and the walk goes
// on with the next one.
void readTraceFile(TraceWalk& walk, const std::string& fileName);

// Tells the events that are due after the last file.
void endWalk(TraceWalk& walk);

} // namespace veldacov
