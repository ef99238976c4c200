package com.corvex.mmitest.sim;

import java.lang.annotation.ElementType;
import java.lang.annotation.Inherited;
import java.lang.annotation.Retention;
import java.lang.annotation.RetentionPolicy;
import java.lang.annotation.Target;

/**
 * The device profile a test class or test method runs on, for
 * {@link SimulatedHandsetExtension}: a shipped profile's name ("aidl", "hidl", ...) or the
 * path of a profile file. On a method it overrides the class's.
 */
@Retention(RetentionPolicy.RUNTIME)
@Target({ElementType.TYPE, ElementType.METHOD})
@Inherited
public @interface HandsetProfile {
    String value();
}
