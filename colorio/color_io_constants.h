#pragma once

/// Answer of every position look-up that finds nothing.
inline constexpr unsigned int NOT_FOUND = 0xFFFFFFFFu;

/// Names of the two CDLs that the host itself adds with `ColorIOManager::add_local_CDL`. Converters accept
/// them without looking them up among the published names.
inline constexpr char INPUT_LOCAL_CDL[] = "input_local_CDL";
inline constexpr char OUTPUT_LOCAL_CDL[] = "output_local_CDL";

/// Stands for a path in `ColorIOManager` when the configuration came from the environment variable OCIO.
inline constexpr char FROM_ENV[] = "FROM_ENV";
/// Environment variable that names a configuration.
inline constexpr char OCIO_VARIABLE[] = "OCIO";
/// Temporary folder of the application that holds the generated LUT files.
inline constexpr char LUT_FOLDER[] = "luts";
/// Category that answers for every extension that no category lists. What its extension column holds is a
/// label for the user and no extension.
inline constexpr char FALLBACK_CATEGORY[] = "default";
inline constexpr char FALLBACK_CATEGORY_EXTENSIONS[] = "Other";
