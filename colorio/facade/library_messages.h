#pragma once

/// From now on what OpenColorIO reports by itself goes to the host's main log handler, as "OpenColorIO: " and
/// its words: warnings at level 2, the rest at level 3, each message once per load. OpenColorIO 1.1 can only
/// write to standard error.
void follow_library_messages();

/// OpenColorIO writes to standard error again, as it does by default.
void leave_library_messages();

/// A load starts: what was reported before may be reported again. A load reads its files several times.
void begin_library_load();
