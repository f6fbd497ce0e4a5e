#pragma once

#include "tool/row_model.h"
#include "workflow/published_cdls.h"
#include "workflow/published_names.h"

namespace tool {

/// The color spaces of a config; `shows_reference` when it has both scene- and display-referred ones.
RowModel<workflow::DescribedSpace> make_space_rows(bool are_published, bool shows_reference);
RowModel<workflow::DescribedTransform> make_transform_rows();
RowModel<workflow::PublishedView> make_view_rows(bool are_published);
RowModel<workflow::PublishedCdl> make_cdl_rows();

} // namespace tool
