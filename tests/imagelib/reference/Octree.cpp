#include "tests/imagelib/reference/Reference.h"

#include <memory>

namespace Reference {
namespace {

struct Node {
    std::uint64_t red = 0, green = 0, blue = 0;
    std::uint32_t count = 0;
    unsigned depth = 0;
    unsigned slot = 0;
    std::size_t heapIndex = 0; // 0: not yet in the heap
    Node* parent = nullptr;
    std::unique_ptr<Node> children[8];

    int ChildCount() const {
        int found = 0;
        for (const auto& child : children)
            found += child != nullptr;
        return found;
    }
};

bool Before(const Node& left, const Node& right) {
    if (left.ChildCount() != right.ChildCount())
        return left.ChildCount() < right.ChildCount();
    return static_cast<std::int32_t>(left.count >> left.depth) <
           static_cast<std::int32_t>(right.count >> right.depth);
}

// Binary heap of nodes in slots 1 and up.
class Heap {
public:
    Heap() : m_Nodes(1) {}
    std::size_t Entries() const { return m_Nodes.size() - 1; }
    Node* operator[](std::size_t index) const { return m_Nodes[index]; }

    void Add(Node* node) {
        if (node->heapIndex) {
            Down(node);
        } else {
            m_Nodes.push_back(node);
            node->heapIndex = Entries();
        }
        Up(node);
    }

    Node* RemoveFirst() {
        Node* const first = m_Nodes[1];
        Node* const last = m_Nodes.back();
        m_Nodes.pop_back();
        Put(last, 1);
        Down(last);
        return first;
    }

private:
    void Put(Node* node, std::size_t index) {
        m_Nodes[index] = node;
        node->heapIndex = index;
    }

    void Up(Node* node) {
        std::size_t index = node->heapIndex;
        for (; index >= 2 && Before(*node, *m_Nodes[index / 2]); index /= 2)
            Put(m_Nodes[index / 2], index);
        Put(node, index);
    }

    void Down(Node* node) {
        std::size_t index = node->heapIndex;
        while (2 * index <= Entries()) {
            std::size_t child = 2 * index;
            if (child + 1 <= Entries() && Before(*m_Nodes[child + 1], *m_Nodes[child]))
                ++child;
            if (!Before(*m_Nodes[child], *node))
                break;
            Put(m_Nodes[child], index);
            index = child;
        }
        Put(node, index);
    }

    std::vector<Node*> m_Nodes;
};

Node* Insert(Node& root, const std::uint8_t* pixel) {
    Node* node = &root;
    for (unsigned depth = 1; depth <= 7; ++depth) {
        const unsigned bit = 8 - depth;
        const unsigned slot = (pixel[1] >> bit & 1) * 4 + (pixel[0] >> bit & 1) * 2 + (pixel[2] >> bit & 1);
        if (!node->children[slot]) {
            node->children[slot] = std::make_unique<Node>();
            node->children[slot]->depth = depth;
            node->children[slot]->slot = slot;
            node->children[slot]->parent = node;
        }
        node = node->children[slot].get();
    }
    node->red += pixel[0];
    node->green += pixel[1];
    node->blue += pixel[2];
    ++node->count;
    return node;
}

} // namespace

Palette OctreePalette(const std::vector<std::uint8_t>& pixels, unsigned colourCount) {
    Node root;
    Heap heap;
    for (std::size_t i = 0; i + 4 <= pixels.size(); i += 4)
        heap.Add(Insert(root, &pixels[i]));
    while (heap.Entries() > colourCount) {
        Node* const node = heap.RemoveFirst();
        Node* const parent = node->parent;
        parent->red += node->red;
        parent->green += node->green;
        parent->blue += node->blue;
        parent->count += node->count;
        parent->children[node->slot].reset();
        heap.Add(parent);
    }
    Palette palette;
    for (std::size_t i = 1; i <= heap.Entries(); ++i) {
        const Node& node = *heap[i];
        const auto mean = [&](std::uint64_t sum) {
            return static_cast<float>(static_cast<double>(sum) / node.count / 255);
        };
        palette.push_back({1.0f, mean(node.red), mean(node.green), mean(node.blue)});
    }
    return palette;
}

} // namespace Reference
