"""A recipe for Conan 2: conan create packaging/conan"""

import os

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class Orvanta(ConanFile):
    name = "orvanta"
    version = "0.1.0"
    license = "Apache-2.0"
    description = "A virtual camera operator for screen recordings"
    settings = "os", "compiler", "build_type", "arch"
    options = {"shared": [True, False], "fPIC": [True, False]}
    default_options = {"shared": True, "fPIC": True}

    def export_sources(self):
        root = os.path.join(self.recipe_folder, "..", "..")
        for pattern in ("CMakeLists.txt", "LICENSE", "README.md", "CHANGELOG.md", "cmake/*", "include/*", "src/*",
                        "camera/*", "bindings/c/*", "docs/*", "examples/*"):
            copy(self, pattern, src=root, dst=self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["ORVANTA_BUILD_TOOLS"] = False
        toolchain.cache_variables["ORVANTA_BUILD_TESTS"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "Orvanta")
        for name, target, needs in (("orvanta", "Orvanta", []), ("orvanta-camera", "OrvantaCamera", ["orvanta"]),
                                    ("orvanta-c", "OrvantaC", ["orvanta-camera", "orvanta"])):
            component = self.cpp_info.components[name]
            component.libs = [target]
            component.requires = needs
            component.includedirs = [os.path.join("include", "orvanta")]
            component.set_property("cmake_target_name", f"Orvanta::{target}")
            component.set_property("pkg_config_name", name)
            if not self.options.shared:
                component.defines = ["ORVANTA_STATIC"]
