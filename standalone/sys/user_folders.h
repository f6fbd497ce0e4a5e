#pragma once

#include <string>

#include "host/host_export.h"

/// The user's cache folder: $XDG_CACHE_HOME, or "~/.cache" when that is unset or not absolute (XDG Base
/// Directory Specification). Empty when the user has no home folder.
HOST_API std::string get_user_cache_folder();

/// The user's folder for settings: $XDG_CONFIG_HOME, or "~/.config", by the same rules.
HOST_API std::string get_user_config_folder();

/// Makes the folder `path` and missing ones above it, private to the user (mode 0700). Empty on success, else
/// the reason.
std::string make_folders(const std::string& path);

/// Makes or finds the folder `base`/`group`/`name`, with `group` and `name` private: owned by this user,
/// mode 0700 (set when it differs), no links. Missing folders above them are made. Refused where every user
/// may write, since another user could have created that name first. Empty on success, else the reason.
HOST_API std::string make_private_folder(const std::string& base, const std::string& group,
                                         const std::string& name);
