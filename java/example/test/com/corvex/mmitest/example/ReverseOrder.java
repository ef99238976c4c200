package com.corvex.mmitest.example;

import java.util.Collections;
import java.util.Comparator;

import org.junit.jupiter.api.ClassOrderer;
import org.junit.jupiter.api.ClassOrdererContext;
import org.junit.jupiter.api.MethodOrderer;
import org.junit.jupiter.api.MethodOrdererContext;

/**
 * Test classes and methods in reverse order of their names: the second order the example
 * suite runs in (the first is by name), to show that no result depends on the order.
 */
public final class ReverseOrder implements ClassOrderer, MethodOrderer {
    @Override
    public void orderClasses(ClassOrdererContext context) {
        context.getClassDescriptors().sort(Collections.reverseOrder(
                Comparator.comparing(descriptor -> descriptor.getTestClass().getName())));
    }

    @Override
    public void orderMethods(MethodOrdererContext context) {
        context.getMethodDescriptors().sort(Collections.reverseOrder(
                Comparator.comparing(descriptor -> descriptor.getMethod().getName())));
    }
}
