// The style of a report.
#pragma once

namespace zorvela {

/// The style sheet: light, dark and printed. One colour for each call, from the palette of Okabe and Ito,
/// which colour-blind people tell apart.
extern const char* const kHtmlStyle;

}  // namespace zorvela
