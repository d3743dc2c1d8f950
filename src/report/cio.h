#pragma once

// The CIO file (-CIO): rates per service in plain lines, written in step with the traces.
//
//   T<test>      one block per selected test: its hits, and what it hit first in the current period
//   O<service>   one block per period of one service number: what the period added
//   G            one block over all tests
//    File <name>
//       <service>
//          <label>\t<rate>% (<hits>/<total>), +<rate> (+<new hits>)

#include "report/session.h"

namespace veldacov {

// Creates the file, a failure is a fatal error.
void openCio(const TraceSession& session);
// The block of the test that ends; a test without a number is a fatal error.
void writeCioTestBlock(const TraceSession& session);
// The block of the current service number, -1 is a fatal error.
void writeCioServiceBlock(const TraceSession& session);
void writeCioGlobalBlock(const TraceSession& session);
// Completes the file.
void closeCio();
// Forgets a file that a run cut short has left open.
void forgetCio();

} // namespace veldacov
