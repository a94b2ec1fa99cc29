#include <memory>
#include <stdexcept>

#include <cmark.h>

#include "tests/support/RenderedPanel.h"

namespace test_support {
namespace {

struct FreeNode {
  void operator()(cmark_node* node) const { cmark_node_free(node); }
};

[[noreturn]] void FailAt(cmark_node* node) {
  throw std::runtime_error(std::string("unexpected ") + cmark_node_get_type_string(node));
}

bool HasType(cmark_node* node, cmark_node_type type) {
  return cmark_node_get_type(node) == type;
}

void AddInlines(cmark_node* parent, RenderedBlock& block, std::string* linkText) {
  for (cmark_node* node = cmark_node_first_child(parent); node != nullptr;
       node = cmark_node_next(node)) {
    if (HasType(node, CMARK_NODE_LINK) && linkText == nullptr) {
      std::string text;
      AddInlines(node, block, &text);
      block.links.emplace_back(text, cmark_node_get_url(node));
      continue;
    }
    std::string added;
    if (HasType(node, CMARK_NODE_LINEBREAK)) {
      added = "\n";
    } else if (HasType(node, CMARK_NODE_TEXT) || HasType(node, CMARK_NODE_CODE)) {
      added = cmark_node_get_literal(node);
    } else {
      FailAt(node);
    }
    block.text += added;
    if (linkText != nullptr) *linkText += added;
  }
}

/// Returns the only child of a list item or a block quote. Throws `std::runtime_error` unless there
/// is exactly one child and it is a paragraph.
cmark_node* OnlyParagraph(cmark_node* parent) {
  cmark_node* const child = cmark_node_first_child(parent);
  if (child == nullptr || cmark_node_next(child) != nullptr ||
      !HasType(child, CMARK_NODE_PARAGRAPH)) {
    FailAt(parent);
  }
  return child;
}

void AddBlock(std::string element, cmark_node* node, std::vector<RenderedBlock>& blocks) {
  blocks.push_back({std::move(element), {}, {}});
  AddInlines(node, blocks.back(), nullptr);
}

void AddBlocks(cmark_node* node, std::vector<RenderedBlock>& blocks) {
  switch (cmark_node_get_type(node)) {
    case CMARK_NODE_HEADING:
      AddBlock("h" + std::to_string(cmark_node_get_heading_level(node)), node, blocks);
      break;
    case CMARK_NODE_PARAGRAPH:
      AddBlock("p", node, blocks);
      break;
    case CMARK_NODE_BLOCK_QUOTE:
      AddBlock("rating", OnlyParagraph(node), blocks);
      break;
    case CMARK_NODE_LIST:
      if (cmark_node_get_list_type(node) != CMARK_BULLET_LIST) FailAt(node);
      for (cmark_node* item = cmark_node_first_child(node); item != nullptr;
           item = cmark_node_next(item)) {
        AddBlock("li", OnlyParagraph(item), blocks);
      }
      break;
    default:
      FailAt(node);
  }
}

}  // namespace

std::vector<RenderedBlock> ParseMarkdown(std::string_view text) {
  const std::unique_ptr<cmark_node, FreeNode> document(
      cmark_parse_document(text.data(), text.size(), CMARK_OPT_DEFAULT));
  std::vector<RenderedBlock> blocks;
  for (cmark_node* node = cmark_node_first_child(document.get()); node != nullptr;
       node = cmark_node_next(node)) {
    AddBlocks(node, blocks);
  }
  return blocks;
}

}  // namespace test_support
