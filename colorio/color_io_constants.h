#pragma once

/// Returned by every lookup of a position that finds nothing.
inline constexpr unsigned int NOT_FOUND = 0xFFFFFFFFu;

/// Names of the two CDLs that the host itself adds with `ColorIOManager::add_local_CDL`. Converters accept
/// them although they are not published.
inline constexpr char INPUT_LOCAL_CDL[] = "input_local_CDL";
inline constexpr char OUTPUT_LOCAL_CDL[] = "output_local_CDL";

/// Used in `ColorIOManager` instead of a path when the config came from the environment variable OCIO.
inline constexpr char FROM_ENV[] = "FROM_ENV";
/// Environment variable with the path of an OCIO config.
inline constexpr char OCIO_VARIABLE[] = "OCIO";
/// Name of the application's temporary folder for the generated LUT files.
inline constexpr char LUT_FOLDER[] = "luts";
/// Category of all extensions that no other category lists. Its extension column is a label for the user,
/// not an extension.
inline constexpr char FALLBACK_CATEGORY[] = "default";
inline constexpr char FALLBACK_CATEGORY_EXTENSIONS[] = "Other";
