-- SPDX-License-Identifier: LicenseRef-Proprietary
-- Links between documents lead to their HTML; links to files that the help lacks become text. The
-- first heading is also the title of the page.
function Link(link)
  local path, anchor = link.target:match("^([^#]*)(.*)$")
  if path == "" or path:match("^%a+:") then
    return link
  end
  local file = io.open(path)
  if not file then
    return link.content
  end
  file:close()
  link.target = path:gsub("%.md$", ".html") .. anchor
  return link
end

function Pandoc(document)
  document.meta.title = document.blocks[1].content
  return document
end
