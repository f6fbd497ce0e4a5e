#pragma once

/// From now on OpenColorIO's own messages go to the host's main log handler, after "OpenColorIO: ": warnings
/// at level 2, others at level 3, each message once per load. OpenColorIO 1.1 can only write to standard
/// error.
void follow_library_messages();

/// OpenColorIO writes to standard error again, as it does by default.
void leave_library_messages();

/// A load starts: earlier messages may be reported again. (A load reads its files several times.)
void begin_library_load();
